// The one mark of what libsensordll.so shows to its host. Everything without it stays inside.
#pragma once

#define SENSORDLL_API __attribute__((visibility("default")))
