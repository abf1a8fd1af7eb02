/// @file
/// The export mark of the library.
#pragma once

/// The one mark of what libsensordll.so shows to its host. Everything without it stays inside.
#define SENSORDLL_API __attribute__((visibility("default")))
