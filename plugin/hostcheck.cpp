#include "hostcheck.h"
