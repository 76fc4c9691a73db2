#pragma once

/// Marks what a shared library of this project shows to others; everything else stays hidden.
#define KESTO_EXPORT __attribute__((visibility("default")))
