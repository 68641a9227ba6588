// Messages, prompts and message boxes, error objects, assertions, and the services that only a host can give.
//
// The library has no user interface. All of this goes to the environment updater that the host has installed: a
// subclass of TuvoEnvUpdater. Without one, messages vanish and services answer with "nothing".
//
//   TuvoEnvUpdater::SetUpdater(&updater);
//   TuvoWriteConsoleMessage(TUVO_MESSAGE_WARNING, L"%s has %d free edges", L"hull", 3);
//   TuvoEnvUpdater::SetUpdater(nullptr);   // before the updater is destroyed
//
// Rules for all of it:
//  - A format and its arguments mean what BuString::Format says; a null format gives the empty text. Nothing is
//    formatted when nobody is there to receive it. A text that exhausted memory could not hold arrives empty.
//  - A text handed to the updater lives for the call only.
//  - Nothing is locked: install updater and handler at start-up. Posting from several threads is as safe as the updater.
#pragma once

#include <TuvoUtil/Export.h>
#include <basutl/BuErrObj.h>
#include <basutl/BuString.h>

// What a message is to the user.
enum _TuvoMessageType : int
{
    TUVO_MESSAGE_ERROR = 0,
    TUVO_MESSAGE_WARNING = 1,
    TUVO_MESSAGE_INFORMATION = 2
};

// What the user answered to a message box. The library itself makes only the first: nobody was asked.
enum _TuvoMsgBoxResponse : int
{
    TUVO_RESPONSE_NONE = 0,
    TUVO_RESPONSE_OK = 1,
    TUVO_RESPONSE_CANCEL = 2,
    TUVO_RESPONSE_ABORT = 3,
    TUVO_RESPONSE_RETRY = 4,
    TUVO_RESPONSE_IGNORE = 5,
    TUVO_RESPONSE_YES = 6,
    TUVO_RESPONSE_NO = 7
};

// How a host starts a process; handed through, never read here.
struct _ProcessOptions
{
    const char* workingDirectory = nullptr;  // null: that of the host
    const char* outputFile = nullptr;        // receives standard output and standard error; null: those of the host
    bool showWindow = false;                 // whether the process gets a window
    bool waitForEnd = false;                 // whether the call returns when the process has ended
};

// ---- The updater ---------------------------------------------------------------------------------------------------

// What a host derives from. The order of the virtual operations is binding: hosts override by position.
class TUVOUTIL_API TuvoEnvUpdater
{
public:
    // There is nothing to copy but what a host adds.
    TuvoEnvUpdater(const TuvoEnvUpdater&) = default;
    TuvoEnvUpdater& operator=(const TuvoEnvUpdater&) = default;
    virtual ~TuvoEnvUpdater();

    // Each does nothing and gives 0 or null unless overridden. The library passes `flag` false and 1 respectively;
    // `forced` asks for a box even where the host would suppress it; `style` is a set of MessageBoxW's style bits.
    virtual void WriteConsoleMessage(_TuvoMessageType type, const wchar_t* text, bool flag);
    virtual void WritePromptMessage(_TuvoMessageType type, const wchar_t* text, int flag);
    virtual _TuvoMsgBoxResponse PostMessageBox(unsigned int style, const wchar_t* caption, const wchar_t* text,
                                               bool forced);
    virtual int CreateProcessWithOption(const char* command, const char* arguments, const _ProcessOptions& options,
                                        void** processHandle, int* processId, bool flag);
    virtual int GetUserEnvDirectory(BuString& directory);
    virtual int KillProcess(void* processHandle);
    virtual int CheckProcess(void* processHandle, int* status);
    virtual const wchar_t* GetCopyright();
    virtual const wchar_t* GetHomeDirectoryPath();
    virtual const wchar_t* GetTempDirectoryPath();
    virtual const wchar_t* GetLogDirectoryPath();

    // The installed updater, null when there is none. Installing keeps the pointer: the host uninstalls it, with null,
    // before the object ends.
    static TuvoEnvUpdater* GetUpdater();
    static void SetUpdater(TuvoEnvUpdater* updater);

protected:
    TuvoEnvUpdater() = default;

private:
    static TuvoEnvUpdater* m_pEnvUpdater;
};

// Takes console text of a host's components to whoever owns the console. Kept and handed out, never called, here.
class ITuvoConsoleMsgHandler
{
public:
    // There is nothing to copy or move but what a host adds.
    ITuvoConsoleMsgHandler() = default;
    ITuvoConsoleMsgHandler(const ITuvoConsoleMsgHandler&) = default;
    ITuvoConsoleMsgHandler(ITuvoConsoleMsgHandler&&) = default;
    ITuvoConsoleMsgHandler& operator=(const ITuvoConsoleMsgHandler&) = default;
    ITuvoConsoleMsgHandler& operator=(ITuvoConsoleMsgHandler&&) = default;

    // Takes a text, which lives for the call only.
    virtual void WriteMessage(_TuvoMessageType type, const wchar_t* text) = 0;

protected:
    ~ITuvoConsoleMsgHandler() = default;
};

// The installed console handler, null when there is none; it is not owned.
TUVOUTIL_API ITuvoConsoleMsgHandler* TuvoGetConsoleMessageHandler();
TUVOUTIL_API void TuvoSetConsoleMessageHandler(ITuvoConsoleMsgHandler* handler);

// ---- Prompts -------------------------------------------------------------------------------------------------------

// While prompts are blocked TuvoWritePromptMessage does nothing; all other messages go on. TuvoEnvIsPromptsBlocked
// gives 1 or 0. Blocking does not nest: one TuvoEnvUnBlockPrompts ends it.
TUVOUTIL_API void TuvoEnvBlockPrompts();
TUVOUTIL_API void TuvoEnvUnBlockPrompts();
TUVOUTIL_API int TuvoEnvIsPromptsBlocked();

// Blocks prompts until the end of its scope. The end unblocks them whatever was before, an outer guard included.
struct TUVOUTIL_API TuvoBlockAllPrompts
{
    TuvoBlockAllPrompts();
    ~TuvoBlockAllPrompts();
    TuvoBlockAllPrompts(const TuvoBlockAllPrompts&) = delete;
    TuvoBlockAllPrompts& operator=(const TuvoBlockAllPrompts&) = delete;
};

// ---- Posting -------------------------------------------------------------------------------------------------------

// Formats a text and hands it to the updater's WriteConsoleMessage, WritePromptMessage or PostMessageBox.
TUVOUTIL_API void TuvoWriteConsoleMessage(_TuvoMessageType type, const wchar_t* format, ...);
TUVOUTIL_API void TuvoWritePromptMessage(_TuvoMessageType type, const wchar_t* format, ...);

// The same as TuvoWriteConsoleMessage; for texts that hold links.
TUVOUTIL_API void TuvoWriteConsoleLinkMessage(_TuvoMessageType type, const wchar_t* format, ...);

// Gives the updater's response, TUVO_RESPONSE_NONE without an updater. A null caption is passed on.
TUVOUTIL_API _TuvoMsgBoxResponse TuvoPostMessageBox(unsigned int style, const wchar_t* caption, const wchar_t* format,
                                                    ...);
TUVOUTIL_API _TuvoMsgBoxResponse TuvoPostForcedMessageBox(unsigned int style, const wchar_t* caption,
                                                          const wchar_t* format, ...);

// For developers: nothing unless TuvoIsDvpWarningEnabled(). An error becomes a forced box with style 0x10 (an error
// icon) and the caption "Error", any other type a console message.
TUVOUTIL_API void TuvoPostDiagnosticMessage(_TuvoMessageType type, const wchar_t* format, ...);

// ---- Services of the host ------------------------------------------------------------------------------------------

// Each passes its arguments to the updater's operation of that name and gives its result; without an updater -1.
TUVOUTIL_API int VEnvCreateProcessWithOption(const char* command, const char* arguments, const _ProcessOptions& options,
                                             void** processHandle, int* processId, bool flag);
TUVOUTIL_API int VEnvKillProcess(void* processHandle);
TUVOUTIL_API int VEnvCheckProcess(void* processHandle, int* status);

// Has the updater fill `directory`. Always 0, whatever the updater said; without one `directory` stays as it is.
TUVOUTIL_API int VEnvGetUserEnvDirectory(BuString& directory);

// The text that the updater gives, which belongs to it; null without an updater.
TUVOUTIL_API const wchar_t* VEnvGetCopyright();
TUVOUTIL_API const wchar_t* VEnvGetHomeDirectoryPath();
TUVOUTIL_API const wchar_t* VEnvGetTempDirectoryPath();
TUVOUTIL_API const wchar_t* VEnvGetLogDirectoryPath();

// ---- Directories ---------------------------------------------------------------------------------------------------

// The user directory: where leak checking looks for its files. It is kept as given, so give it with its last separator;
// null is ignored. Empty, never null, until it is set; the text is valid until the next set.
TUVOUTIL_API void VEnvSetUserDirectory(const wchar_t* directory);
TUVOUTIL_API const wchar_t* VEnvGetUserDirectory();

// The directory for temporary files: the one that was set (null is ignored), else that of the system, with its last
// separator; empty when the system has none, or memory is exhausted.
TUVOUTIL_API void VEnvSetTempPath(const wchar_t* path);
TUVOUTIL_API void VEnvGetTempPath(BuString& path);

// The folder of this library's own file, with its last separator; empty when it cannot be found out.
TUVOUTIL_API BuString TuvoGetAppDirectory();

// ---- Error objects -------------------------------------------------------------------------------------------------

// 1 when the error object is of kind 3 (error), of kind 2 (warning), or the warning with code 11 by which an action
// tells that the user cancelled it. Else, and for null, 0.
TUVOUTIL_API unsigned char VIsError(const BuErrObj* e);
TUVOUTIL_API unsigned char VIsWarning(const BuErrObj* e);
TUVOUTIL_API unsigned char VIsUserCancelWarning(const BuErrObj* e);

// The code of an error object; -32768 when it has none, and for null.
TUVOUTIL_API int VGetErrorID(const BuErrObj* e);

// Makes the warning with code 11, "Action cancelled" in the user's language, and gives it; it belongs to basutl.
TUVOUTIL_API const BuErrObj* VGetUserCancelWarning();

// Shows an error object: kinds 0 and 3 as an error, 2 as a warning, 1 as information on the console; kind 4 (fatal) in
// a message box. 0; 1, with nothing shown, for null, an empty text, and any other kind.
//
// The text of kind 1 is shown as it is. The text of every other kind is its own format: "%%" is shown as "%", and any
// other conversion as nothing.
TUVOUTIL_API int VEnvPostError(const BuErrObj* e);

// Writes an error object to the console as VEnvPostError does, but empty texts too, and every other kind, 4 included,
// as an error. Null does nothing.
TUVOUTIL_API void TuvoWriteConsoleError(const BuErrObj* e);

// Logs each line of an error's description, a blank for an empty one, then a line of three blanks: kind 2 with level 1,
// 3 with 2, 4 with 3, any other with 0. The lines are their own formats, as above. Null and the warning of a cancelled
// action log nothing. TuvoLogLastError logs this thread's last error.
TUVOUTIL_API void TuvoLogError(const BuErrObj* e);
TUVOUTIL_API void TuvoLogLastError();

// Reports a failed assertion: `expression` is its text (char*), `file` and `line` where it stands; null counts as
// empty. An error message goes to the console, then BuAssert is called, with or without an updater.
TUVOUTIL_API void VAssert(void* const expression, char* file, int line);

// ---- Switches ------------------------------------------------------------------------------------------------------

// Whether QD_DVPWARNING_ENABLE, or QD_ENABLE_DLL_UNLOAD_WARNING, was true in the environment (see BuVariableGetBoolean)
// when it was first asked for; false by default.
TUVOUTIL_API bool TuvoIsDvpWarningEnabled();
TUVOUTIL_API bool TuvoIsDLLUnloadWarningEnabled();
