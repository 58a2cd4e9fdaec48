#include "store/sheet.h"
