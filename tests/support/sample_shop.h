#pragma once

#include "tests/support/test_program.h"

/// The program with the shop of samples/: its company is current, its pollutants have names, its materials
/// and usage are imported. A copy of the samples is in the program folder, in `samples`.
class SampleShop : public TestProgram {
public:
    SampleShop();
};
