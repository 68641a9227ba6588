#include <TuvoUtil/Progress.h>

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <utility>

namespace {

std::string g_calls;

// Writes its name down, adds to the value, counts in the flag, and does what a test wants.
class Listener : public ProgressListener
{
public:
    explicit Listener(char name) : m_name(name) {}
    ~Listener() { ProgressManager::RemoveListener(this); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    int OnProgress(const double& progress, const BuString& message, double& value, int& flag) override
    {
        EXPECT_EQ(progress, 12.5);
        EXPECT_EQ(message, L"meshing");
        g_calls += m_name;
        value = value * 10 + (m_name - 'a');
        ++flag;
        if (action)
            action();
        return -1;
    }

    std::function<void()> action;

private:
    char m_name;
};

class Progress : public testing::Test
{
protected:
    // The listeners that hear of a report, by name.
    std::string Called()
    {
        value = flag = 0;
        result = ProgressManager::InvokeListeners(12.5, L"meshing", value, flag);
        return std::exchange(g_calls, {});
    }

    void Add(const std::string& names)
    {
        for (const char name : names)
            EXPECT_EQ(ProgressManager::AddListener(&Find(name)), 0);
    }
    void Remove(const std::string& names)
    {
        for (const char name : names)
            EXPECT_EQ(ProgressManager::RemoveListener(&Find(name)), 0);
    }
    Listener& Find(char name) { return name == 'a' ? a : (name == 'b' ? b : c); }

    Listener a{'a'}, b{'b'}, c{'c'};
    double value = 0;
    int flag = 0;
    int result = 0;
};

TEST_F(Progress, ReachesListenersInTheirOrder)
{
    EXPECT_EQ(Called(), "");
    EXPECT_EQ(result, 1);
    Add("cabab");
    EXPECT_EQ(Called(), "cabab");
    EXPECT_EQ(result, 0);
    EXPECT_EQ(value, 20101);  // each saw what those before it had left
    EXPECT_EQ(flag, 5);
    Remove("a");
    EXPECT_EQ(Called(), "cbab");
    Remove("ba");
    EXPECT_EQ(Called(), "cb");
    Remove("a");  // is not there any more
    EXPECT_EQ(Called(), "cb");
    Remove("cb");
    Called();
    EXPECT_EQ(result, 1);
}

TEST_F(Progress, LetsListenersComeAndGoMeanwhile)
{
    Add("abc");
    b.action = [&] { Remove("b"); };
    EXPECT_EQ(Called(), "ab");  // c has moved to where b was
    c.action = [&] { Remove("a"); };
    Add("b");
    EXPECT_EQ(Called(), "ac");  // b has moved to where c was
    EXPECT_EQ(Called(), "cb");
    c.action = nullptr;
    Remove("c");
    Add("ac");
    a.action = [&] { Remove("ac"); };
    EXPECT_EQ(Called(), "a");
    Called();
    EXPECT_EQ(result, 1);
    Add("a");
    a.action = [&] { Add("c"); };
    EXPECT_EQ(Called(), "ac");
    a.action = [] { throw std::runtime_error("stop"); };
    EXPECT_THROW(Called(), std::runtime_error);
    Remove("ac");
}

TEST_F(Progress, PassesNullBy)
{
    ProgressManager::AddListener(nullptr);
    Called();
    EXPECT_EQ(result, 0);
    Add("a");
    EXPECT_EQ(std::exchange(g_calls, {}) + Called(), "a");
    ProgressManager::RemoveListener(nullptr);
    ProgressManager::RemoveListener(nullptr);
    Remove("a");
    Called();
    EXPECT_EQ(result, 1);
}

TEST_F(Progress, InstancesHaveNoPartInIt)
{
    Add("a");
    {
        const ProgressManager manager;
        ProgressManager copy(manager);
        copy = manager;
        EXPECT_EQ(copy.AddListener(&b), 0);
    }
    EXPECT_EQ(Called(), "ab");
}

// What hosts compiled elsewhere rely on: the table alone; an array, its count and capacity, and one word more.
static_assert(sizeof(ProgressListener) == sizeof(void*));
static_assert(sizeof(ProgressManager) == 3 * sizeof(void*));

}  // namespace
