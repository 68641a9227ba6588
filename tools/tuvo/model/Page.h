// A model as a page that every browser shows: its picture and its tables, in one file that needs no other.
#pragma once

#include "tools/tuvo/model/Grouping.h"
#include "tools/tuvo/model/Model.h"
#include "tools/tuvo/model/Summary.h"

#include <string>
#include <vector>

namespace tool {

struct PageContent
{
    std::string deck;        // its name
    std::string unitSystem;  // empty: not known
    std::vector<SummaryTable> tables;
    Grouping grouping;  // what the picture shows in colours
};

// The page in HTML 5. It holds no script, and forbids the browser to run or load any.
std::string ModelPage(const Model& model, const PageContent& content);

}  // namespace tool
