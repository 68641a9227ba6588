// A solver that reports each step, a listener that prints every other report, and one that stops the solver.
#include <TuvoUtil/Progress.h>

#include <cstdio>

namespace {

// In this application progress is in percent, the value the residual, and a flag that is not 0 stops the work.
class Log : public ProgressListener
{
public:
    int OnProgress(const double& progress, const BuString& message, double& residual, int&) override
    {
        if (m_reports++ % 2 == 0)
            std::printf("%3.0f %% %s, residual %g\n", progress, message.ToNarrow().c_str(), residual);
        return 0;
    }

private:
    int m_reports = 0;
};

class StopWhenSolved : public ProgressListener
{
public:
    int OnProgress(const double&, const BuString&, double& residual, int& stop) override
    {
        if (residual < 1e-3)
            stop = 1;
        return 0;
    }
};

int Solve()
{
    double residual = 1.0;
    int stop = 0;
    int step = 0;
    for (; step < 50 && stop == 0; ++step) {
        residual /= 4.0;
        ProgressManager::InvokeListeners(2.0 * step, L"solving", residual, stop);
    }
    return step;
}

}  // namespace

int main()
{
    Log log;
    StopWhenSolved solved;
    ProgressManager::AddListener(&log);
    ProgressManager::AddListener(&solved);
    std::printf("done after %d steps\n", Solve());
    ProgressManager::RemoveListener(&solved);
    ProgressManager::RemoveListener(&log);
    std::printf("nobody listens: after %d\n", Solve());
}
