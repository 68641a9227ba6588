#include "tools/tuvo/model/BinaryModel.h"

#include "tools/tuvo/Interruption.h"

#include <TuvoUtil/Checksum.h>
#include <TuvoUtil/TrackedFile.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <new>
#include <string_view>
#include <vector>

namespace tool {
namespace {

constexpr std::string_view Signature = "TUVOMODL";
constexpr std::int32_t FormatVersion = 1;
constexpr unsigned long long PieceSize = 1 << 20;  // bytes written, or read, between two looks at the user's wish

// ---- Saving --------------------------------------------------------------------------------------------------------

// Writes what goes into a file and into a checksum with the same bytes.
class Saver
{
public:
    explicit Saver(IWriteStream& stream) : m_stream(stream) {}

    void Int(std::int32_t value) { m_stream.WriteInt32(value); }
    void Count(std::size_t count) { m_stream.WriteInt64(static_cast<long long>(count)); }
    void Double(double value) { m_stream.WriteDouble(value); }
    void Bytes(const void* data, unsigned long long size)
    {
        const auto* bytes = static_cast<const char*>(data);
        for (; size > 0; ThrowIfInterrupted()) {
            const unsigned long long piece = std::min(size, PieceSize);
            m_stream.WriteBytes(piece, bytes);
            bytes += piece;
            size -= piece;
        }
    }
    void Text(std::string_view text)
    {
        Count(text.size());
        Bytes(text.data(), text.size());
    }
    template <typename Value>
    void Values(const std::vector<Value>& values)
    {
        Bytes(values.data(), values.size() * sizeof(Value));
    }

private:
    IWriteStream& m_stream;
};

void SaveElements(const Model& model, Saver& saver)
{
    saver.Count(model.blocks.size());
    for (const ElementBlock& block : model.blocks) {
        saver.Text(block.type->name);
        saver.Int(static_cast<std::int32_t>(block.type->elementClass));
        saver.Int(block.type->nodeCount);
        saver.Count(block.Count());
        saver.Values(block.ids);
        saver.Values(block.nodes);
    }
}

void SaveSets(const Model& model, Saver& saver)
{
    saver.Count(model.sets.size());
    for (const Set& set : model.sets) {
        saver.Text(set.name);
        saver.Int(static_cast<std::int32_t>(set.kind));
        saver.Count(set.ids.size());
        saver.Values(set.ids);
    }
}

void SaveMaterials(const Model& model, Saver& saver)
{
    saver.Count(model.materials.size());
    for (const Material& material : model.materials) {
        saver.Text(material.name);
        saver.Count(material.values.size());
        for (const MaterialValue& value : material.values) {
            saver.Text(value.label);
            saver.Text(value.dataType);
            saver.Double(value.value);
        }
    }
    saver.Count(model.sections.size());
    for (const Section& section : model.sections) {
        saver.Count(section.set);
        saver.Count(section.material);
    }
}

unsigned int ChecksumWithoutWriting(const Model& model, const std::string& unitSystem)
{
    const std::unique_ptr<IWriteStreamBasedChecksum> stream(CreateWriteStreamBasedChecksum());
    if (stream == nullptr)
        throw std::bad_alloc();
    SaveModel(model, unitSystem, *stream);
    return stream->GetChecksum();
}

// ---- The file ------------------------------------------------------------------------------------------------------

void WriteAll(const Model& model, const std::string& unitSystem, unsigned int checksum, const OutputFile& file)
{
    VxInitBinaryFileError();
    {
        const std::unique_ptr<IWriteStream> stream(
            CreateBinaryFileWriter(file.PartPath().c_str(), 1, nullptr, PieceSize));
        if (stream == nullptr)
            throw std::bad_alloc();
        if (!stream->IsValid())
            file.Fail();
        SaveModel(model, unitSystem, *stream);
        stream->WriteUnsignedInt(checksum);
    }
    if (VxGetLastBinaryFileError() != 0)
        file.Fail("the disk is full");
}

struct CloseTracked
{
    void operator()(std::FILE* stream) const { TuvoFClose(stream, "tuvo", __LINE__); }
};

unsigned int ChecksumOfFile(const OutputFile& file)
{
    const std::unique_ptr<std::FILE, CloseTracked> stream(TuvoFOpen(file.PartPath().c_str(), "rb", "tuvo", __LINE__));
    if (stream == nullptr)
        file.Fail();
    VChecksum checksum;
    std::vector<char> piece(PieceSize);
    while (const unsigned long long size = std::fread(piece.data(), 1, piece.size(), stream.get())) {
        ThrowIfInterrupted();
        checksum.Compute(size, piece.data());
    }
    return checksum.GetChecksum();
}

}  // namespace

void SaveModel(const Model& model, const std::string& unitSystem, IWriteStream& stream)
{
    Saver saver(stream);
    saver.Bytes(Signature.data(), Signature.size());
    saver.Int(FormatVersion);
    saver.Text(model.title);
    saver.Text(unitSystem);
    saver.Count(model.nodes.Count());
    saver.Values(model.nodes.ids);
    saver.Values(model.nodes.coordinates);
    SaveElements(model, saver);
    SaveSets(model, saver);
    SaveMaterials(model, saver);
}

void WriteBinaryModel(const Model& model, const std::string& unitSystem, OutputFile& file)
{
    const unsigned int checksum = ChecksumWithoutWriting(model, unitSystem);
    WriteAll(model, unitSystem, checksum, file);
    // A checksum behind its own bytes makes the register run empty, and nothing else ends so.
    if (!file.IsDevice() && ChecksumOfFile(file) != 0)
        file.Fail("what was written has another checksum than the model");
}

}  // namespace tool
