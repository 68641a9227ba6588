// Control over every allocation of the libraries, in the program that links them as archives (static_tests).
#pragma once

namespace allocation {

// Blocks that malloc, calloc and realloc gave to the libraries and that were not freed yet.
int LiveBlocks();

// Lets the allocation number `n` from now on (1 is the next), and all after it, fail; 0 lets all succeed again.
void FailFrom(int n);

// Lets only the allocation number `n` from now on fail.
void FailOnce(int n);

// Whether an allocation has failed since the last FailFrom or FailOnce.
bool HasFailed();

// Runs `work` with the first allocation failing, then the second, and so on until none fails. `work` checks that it got
// the documented failure or a correct result, with ASSERT or EXPECT, and gives back what it took. Gives the number of
// runs in which an allocation failed.
template <typename Work>
int ForEachFailure(Work work)
{
    for (int n = 1;; ++n) {
        FailOnce(n);
        work();
        const bool failed = HasFailed();
        FailFrom(0);
        if (!failed)
            return n - 1;
    }
}

}  // namespace allocation
