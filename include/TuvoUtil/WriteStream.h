// Saving models: a save function writes its values into an IWriteStream, which either puts them into a binary file or
// only computes the checksum of what would be saved.
//
//   void Save(const Part& part, IWriteStream& stream)
//   {
//       stream.WriteString(part.name);   // 05 00 00 00 'b' 'o' 'l' 't' 00
//       stream.WriteDouble(part.length);
//   }
//
//   IWriteStream* file = CreateBinaryFileWriter("model.bin", 1, TellDiskIsFull, 0);
//   if (file != nullptr && file->IsValid())
//       Save(part, *file);
//   delete file;   // writes what is left and closes
//
//   IWriteStreamBasedChecksum* sum = CreateWriteStreamBasedChecksum();
//   Save(part, *sum);   // no file is touched
//   sum->GetChecksum();
//   delete sum;
//
// Rules for all of it:
//  - Values are written as they lie in memory, little-endian, without padding or type.
//  - Every write operation gives 0, whatever happens: failures are told as CreateBinaryFileWriter says.
//  - Some operations put other bytes into the checksum than into the file. Stored checksums depend on all of that.
//  - Two streams may be used from two threads, one stream from one at a time. The last error is one for the process and
//    not locked, and neither is the tracker of files (TrackedFile.h).
#pragma once

#include <TuvoUtil/Export.h>
#include <TuvoUtil/Types.h>
#include <basutl/BuString.h>

// ---- The streams ---------------------------------------------------------------------------------------------------

// The order of the operations is binding: hosts call and override by position. Where several write the same, each
// stands for another kind of number of the model.
class TUVOUTIL_API IWriteStream
{
public:
    IWriteStream() = default;
    IWriteStream(const IWriteStream&) = delete;
    IWriteStream& operator=(const IWriteStream&) = delete;
    virtual ~IWriteStream();

    // Writes a value. Behind each operation:                               // bytes in file   in checksum if others
    virtual int WriteInt(int value) = 0;                                    // 4
    virtual int WriteWideInt(int value) = 0;                                // 4               8, with its sign
    virtual int WriteInt64(long long value) = 0;                            // 8
    virtual int WriteFloat(float value) = 0;                                // 4
    virtual int WriteDouble(double value) = 0;                              // 8
    virtual int WriteReal(double value) = 0;                                // 8
    virtual int WriteText(const BuString& text) = 0;                        // (a)             (b)
    virtual int WritePoint2(const _TvPoint2Str& point) = 0;                 // 16: x, y
    virtual int WritePoint3(const _TvPoint3Str& point) = 0;                 // 24: x, y, z
    virtual int WriteChar(char value) = 0;                                  // 1
    virtual int WriteBlock128(const void* block) = 0;                       // 128, none for null
    virtual int WriteString(const char* text) = 0;                          // (c)             (d)
    virtual int WriteUnsignedInt(unsigned int value) = 0;                   // 4               8, the last four 0
    virtual int WriteUnsignedInt64(unsigned long long value) = 0;           // 8
    virtual int WriteByte(unsigned char value) = 0;                         // 1
    virtual int WriteAddress(unsigned long long address) = 0;               // 8: the address  8: what stands there (e)
    virtual int WriteCountedString(const char* text) = 0;                   // (f)             (d)
    virtual int WriteShort(short value) = 0;                                // 2               4, with its sign
    virtual int WriteInt32(int value) = 0;                                  // 4
    virtual int WriteInt32Triple(const int* values) = 0;                    // 12, none for null
    virtual int WriteFloat32(float value) = 0;                              // 4
    virtual int WritePoint2At(const _TvPoint2Str* point) = 0;               // 16, none for null
    virtual int WritePoint3At(const _TvPoint3Str* point) = 0;               // 24, none for null
    virtual int WriteInt32Pair(const int* values) = 0;                      // 8, none for null
    virtual int WriteFloat64(double value) = 0;                             // 8
    virtual int WriteUnsignedShort(unsigned short value) = 0;               // 2               4, the last two 0
    virtual int WriteBytes(unsigned long long size, const void* data) = 0;  // `size` (g), none for null
    //
    // (a) The narrow text of the system, as far as its first NUL, as WriteString writes it; as the empty text when
    //     memory is exhausted.
    // (b) The low byte of each UTF-16 code unit.
    // (c) The length plus 1 as 4 bytes, the characters, the NUL. For null four bytes 0.
    // (d) The characters alone, none for null.
    // (e) The checksum takes none for the address 0.
    // (f) The length as 4 bytes and the characters. For null four bytes 0.
    // (g) The checksum takes as many as the low 32 bits of the size say.

    // Moves the place where the next byte goes, by an offset in bytes from an origin of fseek (SEEK_SET, SEEK_CUR,
    // SEEK_END), beyond the end as well: 0 done, anything else not. A checksum does nothing and gives 0.
    virtual int Seek(long long offset, int origin) = 0;

    // That place, in bytes from the start of the file; -1 when there is none. A checksum gives 0.
    virtual long long Tell() = 0;

    // Whether the file is open. True for a checksum.
    virtual bool IsValid() = 0;
};

// A stream that keeps nothing but the checksum of what is written.
class TUVOUTIL_API IWriteStreamBasedChecksum : public IWriteStream
{
public:
    ~IWriteStreamBasedChecksum() override;

    // That of everything written so far, as VChecksum gives it (Checksum.h).
    virtual unsigned int GetChecksum() = 0;
};

// ---- Making them ---------------------------------------------------------------------------------------------------

// A stream into a file, which the caller deletes. Mode 1 writes the file anew; 2 appends to it, each write at the end
// wherever Seek went; 0 opens an existing file for reading, and writes fail. Null only when memory is exhausted: a file
// that cannot be opened (any other mode and null as its name among that) gives a stream that is not valid, on which
// writes do nothing and Seek and Tell give -1. The name is cut after 1023 bytes.
//
// Bytes are gathered in a buffer of `bufferSize` bytes, 64 KiB for 0 and 16 MiB at most; without memory for it each
// value is written at once. They are in the file when the buffer was full, after a Seek, in mode 2 after a Tell, and
// when the stream is deleted.
//
// When the disk is full then, the last error (see below) becomes 28, and `diskFull` is called, unless it is null: once,
// until the error is reset. What could not be written is lost, and so is what any other failure keeps from the file,
// which is told by nothing. The callback may use the stream but not delete it, and may throw through the operation that
// calls it, but not while the stream is deleted.
TUVOUTIL_API IWriteStream* CreateBinaryFileWriter(const char* fileName, unsigned int mode, void (*diskFull)(),
                                                  unsigned long long bufferSize);

// A stream into a checksum, which starts at 0xFFFFFFFF; the caller deletes it. Null when memory is exhausted.
TUVOUTIL_API IWriteStreamBasedChecksum* CreateWriteStreamBasedChecksum();

// The last error of all file streams: 28 when a disk was full, else 0; and back to 0.
TUVOUTIL_API int VxGetLastBinaryFileError();
TUVOUTIL_API void VxInitBinaryFileError();
