/// @file
/// The export mark of the simulated camera.
#pragma once

/// Marks what libsimcam.so defines and its users import.
#define SIMCAM_API __attribute__((visibility("default")))
