#pragma once

// The test program is linked with --wrap for malloc, calloc, realloc, strdup
// and free, so every such call made by the library code and the tests passes
// through here. A probe counts the blocks that stay allocated and can make
// allocations fail, which no other test could arrange.
class AllocationProbe {
public:
    AllocationProbe();  // counts from zero
    ~AllocationProbe(); // allocations work again

    // The next `allowed` allocations succeed, every later one answers null
    // (realloc leaves its block alone) until Restore.
    void FailAfter(int allowed);
    void Restore();
    // Blocks allocated minus blocks freed since construction.
    long Outstanding() const;

    AllocationProbe(const AllocationProbe&) = delete;
    AllocationProbe& operator=(const AllocationProbe&) = delete;

private:
    long allocatedAtStart;
    long freedAtStart;
};
