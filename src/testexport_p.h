#pragma once

#include "tamselpackagemanager_export.h"

// Exports a private part, so that tests can reach it, in builds that have tests.
#ifdef TAMSEL_EXPORT_FOR_TESTS
#define TAMSEL_TEST_EXPORT TAMSELPACKAGEMANAGER_EXPORT
#else
#define TAMSEL_TEST_EXPORT
#endif
