#include "tools/tuvo/Suggest.h"

#include <basutl/BuCharacter.h>

#include <algorithm>
#include <utility>

namespace tool {
namespace {

std::string Lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), BuToLower<char>);
    return text;
}

bool Contains(const std::string& text, const std::string& part)
{
    return part.size() > 1 && Lower(text).find(Lower(part)) != std::string::npos;
}

// How far a known name is from the text; an unrelated one gives a negative number.
int Remoteness(const std::string& text, const std::string& known)
{
    const int distance = EditDistance(text, known);
    const int longest = static_cast<int>(std::max(text.size(), known.size()));
    if (distance <= std::max(1, longest / 3) && distance < longest)
        return distance;
    return Contains(known, text) ? distance : -1;
}

}  // namespace

int EditDistance(const std::string& left, const std::string& right)
{
    const std::string a = Lower(left);
    const std::string b = Lower(right);
    // The last three rows of the table of distances between the beginnings of both texts.
    std::vector<int> before(b.size() + 1);
    std::vector<int> last(b.size() + 1);
    std::vector<int> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j)
        row[j] = static_cast<int>(j);
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::swap(before, last);
        std::swap(last, row);
        row[0] = static_cast<int>(i);
        for (std::size_t j = 1; j <= b.size(); ++j) {
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (a[i - 1] != b[j - 1])});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                row[j] = std::min(row[j], before[j - 2] + 1);
        }
    }
    return row[b.size()];
}

std::vector<std::string> NearestNames(const std::string& text, const std::vector<std::string>& known)
{
    std::vector<std::pair<int, std::string>> near;
    for (const std::string& name : known)
        if (const int remoteness = Remoteness(text, name); remoteness >= 0)
            near.emplace_back(remoteness, name);
    std::stable_sort(near.begin(), near.end(), [](const auto& l, const auto& r) { return l.first < r.first; });

    std::vector<std::string> names;
    for (const auto& [remoteness, name] : near)
        if (names.size() < 3 && std::find(names.begin(), names.end(), name) == names.end())
            names.push_back(name);
    return names;
}

std::string DidYouMean(const std::string& text, const std::vector<std::string>& known)
{
    const std::vector<std::string> names = NearestNames(text, known);
    std::string question;
    for (std::size_t i = 0; i < names.size(); ++i) {
        question += i == 0 ? "; did you mean " : (i + 1 < names.size() ? ", " : " or ");
        question += '"' + names[i] + '"';
    }
    return names.empty() ? question : question + '?';
}

}  // namespace tool
