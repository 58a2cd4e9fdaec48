#pragma once
#include <unistd.h>
#include "base/first.h"
