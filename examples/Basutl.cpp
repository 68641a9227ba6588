// basutl by itself: words of a text, an XML file, an error with its reason, a path. The argument is the folder of unit.xml.
#include <basutl/BuErrObj.h>
#include <basutl/BuObjectArrayTempl.h>
#include <basutl/BuPath.h>
#include <basutl/BuString.h>
#include <basutl/BuXml.h>

#include <cstdio>

namespace {

void Show(const char* what, const BuString& text)
{
    std::printf("%-8s %s\n", what, text.ToNarrow().c_str());
}

BuString Bracketed(const BuString& line)
{
    BuObjectArrayTempl<BuString> words;
    line.ExtractWords(words, L" ,", L'"');
    BuString result;
    for (int i = 0; i < words.GetCount(); ++i)
        result += L"[" + words[i] + L"]";
    return result;
}

// The name of the first unit system of a catalogue; an error when it cannot be read.
const BuErrObj* ReadFirstSystem(const BuString& path, BuString& name)
{
    BuXmlDocument document;
    if (!document.Load(path)) {
        BuString reason;
        reason.Format(L"%s at byte %lld", document.GetErrorText().Mid(0, 16).GetText(), document.GetErrorOffset());
        return BuSetError(3, reason);
    }
    for (BuXmlNode node = document.GetRoot().GetFirstChild(); node; node = node.GetNextSibling())
        if (node.IsNamed(L"UNIT_SYSTEM") && node.GetAttribute(L"NAME", name))
            break;
    return nullptr;
}

}  // namespace

int main(int, char** arguments)
{
    Show("words", Bracketed(L"bolt, \"M8 x 40\",, 12.9"));

    BuString text = L"  42 bolts ";
    int count = 0;
    text.TrimLeft().TrimRight();
    if (text.TrimLeftNumber(count))
        std::printf("%-8s %d and \"%s\"\n", "number", count, text.ToNarrow().c_str());
    Show("decimals", BuString::FromDouble(0.125, 2));  // exact, ties to even

    BuString system;
    if (ReadFirstSystem(BuString(arguments[1]) + L"/unit.xml", system) == nullptr)
        Show("system", system);
    Show("failure", BuGetErrorDescription(ReadFirstSystem(L"no such file.xml", system)));

    BuString way = BuPathMakeRelativeW(L"/models/wing/spar.inp", L"/models/hull");
    way.Replace(L"\\", L"/");  // Windows puts its own separators in
    Show("way", way);
}
