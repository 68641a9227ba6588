// Debug parameters: switches and numbers of the modules of a program, read from a text file, MovraDebug.config, that a
// developer edits. UtlParamInfo holds parameters by module; QDDebugUtl is the one set of the process, which modules ask.
//
//   QDDebugUtl::SetBinDir("C:\\movra\\bin\\win64\\");
//   QDDebugUtl::ReadConfigInfo(0, L"Mesher", L"", 0);           // 0; the file says: TraceLevel : 3
//   QDDebugUtl::GetCustomConfigIntVal(L"TraceLevel")            // 3
//   QDDebugUtl::GetCustomConfigIntVal(L"CheckElements")         // 0: there is no such parameter
//
// The file, in narrow text of the system. A line is "name : value", split at its first ':':
//
//   # a comment             '#' in the first column
//   TraceLevel : 3          the name without blanks at its end, the value without white space at its start
//   TraceLevel :            ignored, as is every line without a ':' or with white space alone behind it
//   TraceLevel : 4          the last line of a name counts
//
// A line is read in pieces of 1023 bytes, each like a line of its own. Lines end with LF or CR LF; a NUL ends a piece
// early.
//
// A parameter has a text, and as numbers what BuString::ToInt and ToDouble find at its start: "3abc" is 3; "1e3" is the
// integer 1 and the real number 1000; "on" is 0. Within a module names differ; modules and parameters keep the order in
// which they were added. Names are compared as they are, case included.
//
// What every function returns, unless it says otherwise:
//
//   0   done
//   1   the module has no such parameter; the parameter has this text already; the file was not opened
//   2   there is no such module; no module has such a parameter; no configuration file was found
//   3   there are no modules at all
//  -1   memory is exhausted; nothing changed, unless the function says otherwise
//
// Cost: finding a module or a parameter does not depend on their number, removing one parameter is linear in those of
// its module. Not locked: fill the parameters at start-up and use them in one thread at a time.
#pragma once

#include <TuvoUtil/Export.h>
#include <basutl/BuString.h>
#include <basutl/BuTemplateArray.h>

namespace debugconfig {
class Registry;
struct Module;
}  // namespace debugconfig

// Receives a line of a report, without a line end, and its level, which is 1. `text` lives for the call only. What it
// returns is ignored; it may change the parameters, and may throw.
using UtlParamMessageHandler = int (*)(int level, const char* text);

// A module of a UtlParamInfo, which owns it. It lives until ClearAll.
class UtlModule
{
public:
    UtlModule(const UtlModule&) = delete;
    UtlModule& operator=(const UtlModule&) = delete;

    // The name, and the file that was read last; that is empty when the module was made by code.
    const BuString& GetName() const noexcept { return m_name; }
    const BuString& GetFile() const noexcept { return m_file; }

private:
    friend struct debugconfig::Module;
    UtlModule() noexcept = default;
    ~UtlModule() = default;

    BuString m_name;
    BuString m_file;
};

// Modules with their parameters.
class TUVOUTIL_API UtlParamInfo
{
public:
    UtlParamInfo() noexcept;
    ~UtlParamInfo();
    UtlParamInfo(const UtlParamInfo&) = delete;
    UtlParamInfo& operator=(const UtlParamInfo&) = delete;

    // ---- Files ------------------------------------------------------------------------------------------------------

    // Reads a file into a module, which is made if need be, after dropping what the module held when `clear` is not 0,
    // and notes the file for WriteInfoToFile. 1 when the file cannot be opened; -1 also when it cannot be read to its
    // end, with nothing changed, while memory may run out between two lines. When `verbose` is not 0 the message handler
    // gets "Reading parameters of module "M", from file F" first and the listing of PrintModuleInfo at the end.
    int ReadParamsWithValues(const BuString& module, const BuString& file, int verbose, int clear);

    // Writes modules back to their files, "name : text" a line; a parameter with an empty name or text is left out, and
    // a text with a line end comes back as two lines.
    //
    //   module given (not empty)      the file of that module gets its parameters, in place of all that it held
    //   fileName alone (not null)     each file of that name, without its directory, gets those of all its modules
    //   neither                       each file gets the parameters of all its modules at its end
    //   both                          as for the module; other files of that name are deleted
    //
    // Kept: with a module given, other modules of its file, and comments in every case but the third, are lost. For the
    // name without its directory Windows takes what is behind the last '\' alone, Linux '/' as well.
    //
    // A file is replaced as a whole or stays as it was. 1 when one could not be written or deleted; the others were. A
    // module that was never read is in no file. -1 with no file touched.
    int WriteInfoToFile(const BuString& module, const BuString* fileName);

    // ---- Questions --------------------------------------------------------------------------------------------------

    // The values of a parameter: of that module, or with a null `module` of the first one that has it. Each output may be
    // null. Without such a parameter the numbers are 0 and the text stays as it was: 1 when the module does not have it,
    // 2 when no module does or `module` is unknown, 3 without modules.
    int GetCustomConfigInfo(const BuString* module, const BuString& name, int* intValue, double* realValue,
                            BuString* textValue);

    // The same for a module that was found before; 2 for null.
    int GetModuleParamValue(const UtlModule* module, const BuString& name, int* intValue, double* realValue,
                            BuString* textValue);

    // The first module that has a parameter, and the position of the parameter among the module's, from 0. 2 with null
    // and -1 when none has.
    int GetModuleContainingParam(const BuString& name, UtlModule*& module, int& position);

    // Replaces the arrays by the names and texts of a module's parameters; 2, with both empty, when it is unknown.
    int GetModuleInfo(const BuString& module, BuTemplateArray<BuString>& names, BuTemplateArray<BuString>& values);

    // Replaces the arrays by the names of all modules and their files, which belong to this object until ClearAll. A file
    // is empty, not null, for a module that was never read.
    int GetModuleAndFileNames(BuTemplateArray<BuString>& modules, BuTemplateArray<BuString*>& files);

    // 1 when there is a module, else 0.
    int IsModuleInitialized();

    // ---- Changes ----------------------------------------------------------------------------------------------------

    // Gives a parameter a text: in that module, which is made if need be, or with a null `module` in the first one that
    // has the parameter. 1 when it has this text already, 2 when no module has it.
    int CheckAndAddParamWithValue(const BuString* module, const BuString& name, const BuString& value);

    // The same, but 0 also when the parameter has this text already. `module` is only read.
    int SetConfigInfo(BuString* module, const BuString& name, const BuString& value);

    // Removes a parameter from that module, or with a null `module` from the first one that has it. 1 when the module
    // does not have it, 2 when no module does or `module` is unknown.
    int RemoveParameter(const BuString* module, const BuString& name);

    // Removes all parameters of a module, which stays with its file; 2 when it is unknown. ClearAll removes all modules.
    int ClearModuleInfo(const BuString& module);
    int ClearAll();

    // ---- Reports ----------------------------------------------------------------------------------------------------

    // Sets the handler of verbose readings in place of the one before; null, as at first, for none. It is kept.
    int SetMessageHandler(int (*handler)(int level, const char* text));

    // Hands `title`, then each module with its file, each followed by its parameters, to a handler, which may be another
    // one. 1 for null.
    //
    //   Reading parameters of module
    //     Mesher, from file C:\movra\bin\../../Site/MovraDebug.config
    //       TraceLevel : 3
    int PrintModuleInfo(BuString title, int (*handler)(int level, const char* text));

private:
    // Finds or makes a module: 1 when it existed, 0 when it is new.
    int ConfigCheckAndAddModule(const BuString& name, UtlModule*& module);
    int GetModuleFromName(const BuString& name, UtlModule*& module);  // 2, with null, when it is unknown

    // Splits a line, which stays as it is; 1 when it says nothing.
    int ConfGetGetParamAndValueStrings(BuString& line, BuString& name, BuString& value);

    debugconfig::Registry* m_registry = nullptr;  // null while there are no modules
    UtlParamMessageHandler m_handler = nullptr;
};

// The parameters of the process. Its functions do what those of UtlParamInfo do.
class TUVOUTIL_API QDDebugUtl
{
public:
    // Reads the configuration once: 1 when it was read, or looked for, before and `reread` is 0. An empty `file` means
    // MovraDebug.config, an empty `module` Vdb. The file is looked for in the user directory, if that is set, then in the
    // binary directory + "../../Site/". 2 when it is in neither. A module that is read again starts empty.
    //
    // Kept: it counts as read when it was not found, and still after ClearAll.
    static int ReadConfigInfo(int reread, const BuString& module, const BuString& file, int verbose);

    // Sets a directory to look in; a separator is added at its end unless it has one. Empty, as at first: not set, which
    // for the binary directory means the working directory.
    static int SetUserDir(const BuString& directory);
    static int SetBinDir(const BuString& directory);

    // The text and the numbers of a parameter, as UtlParamInfo gives them.
    static int GetCustomConfigInfo(const BuString* module, const BuString& name, int* intValue, double* realValue,
                                   BuString* textValue);

    // The integer of a parameter in the first module that has it; 0 when none has.
    static int GetCustomConfigIntVal(const BuString& name);

    // Replaces the array by the names of all modules.
    static int GetModuleNames(BuTemplateArray<BuString>& names);

    // Each calls the function of UtlParamInfo with its name, with the parameters of the process.
    static int GetModuleInfo(const BuString& module, BuTemplateArray<BuString>& names,
                             BuTemplateArray<BuString>& values);
    static int IsModuleInitialized();
    static int CheckAndAddParamWithValue(const BuString* module, const BuString& name, const BuString& value);
    static int SetConfigInfo(BuString* module, const BuString& name, const BuString& value);
    static int RemoveParameter(const BuString* module, const BuString& name);
    static int ClearModuleInfo(const BuString& module);
    static int ClearAll();
    static int SetMessageHandler(int (*handler)(int level, const char* text));
    static int WriteInfoToFile(const BuString& module, const BuString* fileName);

    static BuString m_sBinDir;  // what SetBinDir has set
};
