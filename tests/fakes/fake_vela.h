// Control interface of the fake acceleration modules built for the tests.
// The fakes record every call of the VelaVid entries the library uses, so a
// test can check the exact arguments a dispatching export handed over.
#ifndef QBO_TESTS_FAKES_FAKE_VELA_H_
#define QBO_TESTS_FAKES_FAKE_VELA_H_

#include <stdint.h>

#if defined(_WIN32)
#define FAKE_VELA_EXPORT __declspec(dllexport)
#else
#define FAKE_VELA_EXPORT __attribute__((visibility("default")))
#endif

enum { kFakeScaleArray = 0, kFakeConvertArray = 1, kFakeEntryCount = 128, kFakeMaxArgs = 16 };

struct FakeVelaCall {
  int array;  // kFakeScaleArray or kFakeConvertArray
  int index;
  int argc;
  intptr_t args[kFakeMaxArgs];
};

#ifdef __cplusplus
extern "C" {
#endif

// VelaVid: calls since the last reset and the last one of them.
typedef int (*FakeVelaVidCallCountFn)(void);
typedef const struct FakeVelaCall* (*FakeVelaVidLastCallFn)(void);
// Clears the record and restores every entry, the arrays and the table.
typedef void (*FakeVelaVidResetFn)(void);
// Value every entry returns.
typedef void (*FakeVelaVidSetResultFn)(intptr_t result);
// Removes (present = 0) or restores one entry of one array.
typedef void (*FakeVelaVidSetEntryFn)(int array, int index, int present);
// Makes one array pointer of the table null (or restores it).
typedef void (*FakeVelaVidSetArrayNullFn)(int array, int is_null);

// Both modules: how often their API entry point was called, and whether it
// is to hand back a null table (set through the environment variable
// FAKE_VELA_NULL_TABLE=VelaMem or =VelaVid before loading).
typedef int (*FakeVelaApiCallsFn)(void);

#ifdef __cplusplus
}
#endif

#endif  // QBO_TESTS_FAKES_FAKE_VELA_H_
