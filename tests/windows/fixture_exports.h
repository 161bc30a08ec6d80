/* A small DLL built by the same export machinery as the library, covering
 * what the library's own header may not declare yet: both conventions, an
 * export without parameters, a declaration over two lines, and second names
 * of each convention. */
#ifndef QBO_TESTS_WINDOWS_FIXTURE_EXPORTS_H_
#define QBO_TESTS_WINDOWS_FIXTURE_EXPORTS_H_

#include "QuillonBufferOperaU.h"

#ifdef __cplusplus
extern "C" {
#endif

/* a + 10 * b + 100 * c */
QBO_API int32_t QBO_CALLEE FxStdWeigh3(int32_t a, int32_t b,
                                       int32_t c);
QBO_API int32_t QBO_CALLEE FxStdWeigh3Again(int32_t a, int32_t b, int32_t c);
/* QBO_ALIAS_OF(FxStdWeigh3) */
/* 42 */
QBO_API int32_t QBO_CALLEE FxStdNone(void);
/* a - b */
QBO_API int32_t QBO_CALLER FxCdeclDiff2(int32_t a, int32_t b);
QBO_API int32_t QBO_CALLER FxCdeclDiff2Again(int32_t a, int32_t b); /* QBO_ALIAS_OF(FxCdeclDiff2) */
/* d[0] + (c - b): pointer arguments are words like any other */
QBO_API uint32_t QBO_CALLEE FxStdPointers(const void* a, uint8_t* b, uint8_t* c,
                                          const uint32_t* d);

#ifdef __cplusplus
}
#endif

#endif /* QBO_TESTS_WINDOWS_FIXTURE_EXPORTS_H_ */
