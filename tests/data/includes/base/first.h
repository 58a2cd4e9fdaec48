#pragma once
#include "base/second.h"
