#include "support/UnitsProgram.h"

#include "support/ChildProcess.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>
#include <stdexcept>

namespace {

// With the program's own definitions only, the American ones where they differ.
ChildResult RunUnits(const std::string& input)
{
    return RunAndCapture(
        {L"units", L"--quiet", L"--terse", L"--one-line", L"--output-format", L"%.17g", L"--file", L""},
        {{L"UNITS_ENGLISH", L"US"}, {L"LC_ALL", L"C"}}, input);
}

}  // namespace

bool UnitsProgram::IsInstalled()
{
    return RunUnits("").exitCode == 0;
}

std::size_t UnitsProgram::Ask(const std::string& have, const std::string& want)
{
    m_questions.push_back(have + '\n' + want + '\n');
    return m_questions.size() - 1;
}

void UnitsProgram::Expect(double ours, const std::string& have, const std::string& want, const std::string& what)
{
    m_expectations.push_back({Ask(have, want), ours, what});
}

std::vector<double> UnitsProgram::Compare() const
{
    std::string input;
    for (const std::string& question : m_questions)
        input += question;
    std::istringstream output(RunUnits(input).output);

    std::vector<double> answers;
    for (const std::string& question : m_questions) {
        std::string line;
        std::getline(output, line);
        char* end = nullptr;
        answers.push_back(std::strtod(line.c_str(), &end));
        if (line.empty() || *end != '\0')
            throw std::runtime_error(std::string("units says \"").append(line).append("\" to\n").append(question));
    }
    for (const auto& [question, ours, what] : m_expectations)
        EXPECT_NEAR(ours / answers[question], 1.0, 1e-12) << what << "\n" << m_questions[question];
    return answers;
}
