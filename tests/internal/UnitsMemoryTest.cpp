// Exhausted memory at every allocation of every function of the unit family.

#include <TuvoUtil/Memory.h>
#include <TuvoUtil/Units.h>

#include "VUnit/Catalogue.h"

#include "support/AllocationControl.h"
#include "support/TestFiles.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr char CatalogueText[] = R"(<UNITS>
  <BASE_TYPE TYPE="LENGTH"><BASE_UNIT NAME="Metre" ABBR="m" ID="1" CONV_VAL="1"/>
    <BASE_UNIT NAME="Micrometre" ABBR="µm" ID="2" CONV_VAL="1e6"/></BASE_TYPE>
  <UNIT_SYSTEM NAME="SI" DISPLAY_NAME="m" ID="0" LENGTH_UNIT="1" MASS_UNIT="-1" TIME_UNIT="-1" HEAT_UNIT="-1"/>
  <UNIT_SYSTEM NAME="µ" DISPLAY_NAME="µm" ID="1" LENGTH_UNIT="2" MASS_UNIT="-1" TIME_UNIT="-1" HEAT_UNIT="-1"/>
  <DATA_TYPE NAME="Length" ID="1" NUM_L="1" DISPLAY_UNIT_ID_NAME="0:meter;1:µ" ZAMVIEW_NAME="LEN"/>
  <DATA_TYPE NAME="Fläche" ID="2" NUM_L="2"/>
</UNITS>)";

class UnitsMemory : public testing::Test
{
protected:
    UnitsMemory()
    {
        m_folder.Write("unit.xml", CatalogueText);
        m_directory = m_folder.NarrowPath();
        m_directory.pop_back();
        m_file = m_folder.NarrowPath("unit.xml");
    }
    ~UnitsMemory() override { catalogue::ResetForTests(); }

    void Load()
    {
        catalogue::ResetForTests();
        ASSERT_EQ(VUnitUtlFillObject(m_file.c_str(), nullptr), 1);
    }

    // Runs `work` on a newly loaded catalogue, with its allocations failing one after the other, and expects that some
    // do.
    template <typename Work>
    void OnFreshCatalogues(Work work)
    {
        int failures = 0;
        for (int n = 1;; ++n, ++failures) {
            Load();
            allocation::FailOnce(n);
            work();
            const bool failed = allocation::HasFailed();
            allocation::FailFrom(0);
            if (!failed)
                break;
        }
        EXPECT_GT(failures, 0);
    }

    static bool HasLengths(int units, int systems, int types)
    {
        const catalogue::Lengths lengths = catalogue::CurrentLengths();
        return lengths.units == units && lengths.systems == systems && lengths.dataTypes == types;
    }

    TemporaryFolder m_folder;
    std::string m_directory, m_file;
};

TEST_F(UnitsMemory, AFurtherFileIsReadWholeOrLeavesTheFirstOneAsItWas)
{
    OnFreshCatalogues([&] {
        char* text = nullptr;
        const bool isRead = VUnitUtlFillObject(m_file.c_str(), &text) == 1;
        EXPECT_TRUE(isRead ? HasLengths(4, 4, 4) && text == nullptr : HasLengths(2, 2, 2));
        EXPECT_EQ(catalogue::Get().m_dataTypes[isRead ? 2 : 0].displayUnitCount, 2);
        EXPECT_STREQ(VUnitUtlGetDataTypeNameFromId(1), "Length");
        EXPECT_EQ(VUnitUtlGetDataTypeId("nothing"), -1);
        VBuFree(text, "test", __LINE__);
    });
}

TEST_F(UnitsMemory, TheStartGivesAWholeOrAnEmptyCatalogue)
{
    allocation::ForEachFailure([&] {
        catalogue::ResetForTests();
        VUnitUtlMain(m_directory.c_str());
        const catalogue::Lengths lengths = catalogue::CurrentLengths();
        EXPECT_TRUE(lengths.dataTypes == lengths.units && (lengths.units == 0 || lengths.units == 2)) << lengths.units;
        const char* const path = VUnitUtlGetPath();
        EXPECT_TRUE(path == nullptr || path == m_directory);
    });
}

TEST_F(UnitsMemory, LookupsFindTheSame)
{
    OnFreshCatalogues([] {
        EXPECT_EQ(VUnitUtlGetBaseIdFromName("M"), 1);
        double converted = 0.0;
        VUnitUtlConvertFromOneToAnother(2, 2, 1, 0, 5e12, &converted);
        EXPECT_EQ(converted, 5.0);
    });
}

TEST_F(UnitsMemory, AppendingSucceedsOrChangesNothing)
{
    OnFreshCatalogues([] {
        const int id = VUnitUtlSetCurrentSystem("", "m", "", "");
        EXPECT_TRUE(id == 2 ? HasLengths(2, 3, 2) : id == -1 && HasLengths(2, 2, 2)) << id;
        EXPECT_EQ(VUnitUtlGetCurrentSystem(), id == -1 ? 0 : 2);
    });
    const auto newName = [](bool byExponents) {
        return byExponents ? VUnitUtlGetDataTypeName(9, 9, 9, 9, 1)
                           : VUnitUtlGetDataTypeNameFromZamViewDataTypeName("New");
    };
    for (const bool byExponents : {true, false})
        OnFreshCatalogues([&] {
            const char* const name = newName(byExponents);
            EXPECT_TRUE(HasLengths(2, 2, name != nullptr ? 3 : 2));
            EXPECT_STREQ(name, name == nullptr ? nullptr : byExponents ? "UnKnown3" : "New");
        });
}

TEST_F(UnitsMemory, ListsAreGivenWholeOrNotAtAll)
{
    int (*const lists[])(char***) = {VUnitUtlGetDataTypeList, VUnitUtlGetDisplayedSystemTypeList};
    for (const auto list : lists)
        OnFreshCatalogues([&] {
            char** names = nullptr;
            const int count = list(&names);
            EXPECT_TRUE(count == 2 || (count == 0 && names == nullptr)) << count;
            for (int i = 0; i < count; ++i)
                VBuFree(names[i], "test", __LINE__);
            VBuFree(names, "test", __LINE__);
        });
    OnFreshCatalogues([] {
        char** units = nullptr;
        const int count = VUnitBaseUnitForType(0, &units);
        EXPECT_EQ(count, units != nullptr ? 2 : 0);
        VBuFree(units, "test", __LINE__);
    });
}

TEST_F(UnitsMemory, RepresentationsAreGivenOrEmpty)
{
    OnFreshCatalogues([] {
        BuString text;
        const int isDisplayUnit = VUnitUtlGetUnitRepresentation(
            L"Length with a name that is too long to be kept in place", "\xC2\xB5m", "", "", "", text);
        EXPECT_EQ(isDisplayUnit, 0);
        EXPECT_TRUE(text.IsEmpty());
    });
}

}  // namespace
