// Values for a debugger to show: it stops in ShowAll.
#include <TuvoUtil/Units.h>
#include <basutl/BuArrayTempl.h>
#include <basutl/BuErrObj.h>
#include <basutl/BuString.h>
#include <basutl/BuTemplateArray.h>
#include <basutl/BuTreeItemTempl.h>

#include <algorithm>
#include <iterator>

namespace {

struct Values
{
    BuString empty;
    BuString text = L"L\u00E4nge \"quoted\"";
    BuString longText;
    BuString path = BuString(L"folder/") + L"name";
    BuArrayTempl<int> none;
    BuArrayTempl<int> numbers;
    BuObjectArrayTempl<BuString> words;
    BuTemplateArray<double> halves;
    BuTreeItemTempl<int> tree;
    unsigned char damaged[64];  // what no constructor has seen
    BuErrObj plain;
    BuErrObj warning = BuErrObj(BU_ERR_WARNING, 11, L"Action cancelled");
    _UnitBaseTypeStr* baseUnit = nullptr;
    _UnitSystemStr* system = nullptr;
    _UnitDataTypeStr* dataType = nullptr;
    VUnit catalogue;
};

[[gnu::noinline]] int ShowAll(const Values& values)
{
    return values.numbers.GetCount();
}

void Fill(Values& values)
{
    for (int i = 0; i < 3; ++i)
        values.numbers.Add(i * 10);
    for (int i = 0; i < 5000; ++i)
        values.longText += L"-=";
    values.words.Add(L"bolts");
    values.words.Add(L"");
    values.halves.Add(0.5);
    std::fill(std::begin(values.damaged), std::end(values.damaged), static_cast<unsigned char>(0x12));
    values.tree.SetData(1);
    values.tree.AppendChild(2)->AppendChild(3);
    values.tree.AppendChild(4);
}

}  // namespace

int main()
{
    static char name[] = "Pressure";
    static char abbreviation[] = "degF";
    _UnitBaseTypeStr baseUnit = {nullptr, abbreviation, 7, 3, 1.8, -459.67};
    _UnitSystemStr system = {"mm-ton", "", 5, 12, 31, 44, -1};
    _UnitDisplayUnitStr displayUnits[] = {{"MPa", 5}, {"Pa", 0}};
    _UnitDataTypeStr dataType = {name, 20, -1, 1, -2, 0, 0, "", 1.0, 0, 2, displayUnits, ""};

    Values values;
    Fill(values);
    values.baseUnit = &baseUnit;
    values.system = &system;
    values.dataType = &dataType;
    return ShowAll(values) == 3 ? 0 : 1;
}
