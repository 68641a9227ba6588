#include "fuzz/DeckLaws.h"
#include "tools/tuvo/model/deck/KeywordDeck.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    deck::CheckLaws(tool::ReadKeywordDeck, {reinterpret_cast<const char*>(data), size});
    return 0;
}
