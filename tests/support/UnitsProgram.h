// GNU units as a judge of conversions: values of ours are collected and compared with its answers in one run.
//
//   UnitsProgram program;
//   program.Expect(25.4, "inch", "mm", "Length");   // both in the language of the program
//   program.Compare();
#pragma once

#include <string>
#include <vector>

class UnitsProgram
{
public:
    static bool IsInstalled();

    // Asks how many of `want` make one `have`; gives the place of the answer.
    std::size_t Ask(const std::string& have, const std::string& want);

    // Asks the same and expects the answer to be ours.
    void Expect(double ours, const std::string& have, const std::string& want, const std::string& what);

    // Runs the program and gives its answers. Fails the test for each expectation that is not met to 1e-12 of its
    // value; throws when the program does not understand a question or finds its two units of different dimensions.
    std::vector<double> Compare() const;

private:
    struct Expectation
    {
        std::size_t question;
        double ours;
        std::string what;
    };
    std::vector<std::string> m_questions;
    std::vector<Expectation> m_expectations;
};
