// Clang gives functions of Objective-C++ the personality of this runtime's Objective-C, which passes C++
// exceptions by. Nothing here throws or catches Objective-C exceptions, so C++'s own takes its place.

#include <unwind.h>

extern "C" {

_Unwind_Reason_Code __gxx_personality_v0(int version, _Unwind_Action actions,
    _Unwind_Exception_Class exceptionClass, _Unwind_Exception* exception, _Unwind_Context* context);

_Unwind_Reason_Code __gnu_objc_personality_v0(int version, _Unwind_Action actions,
    _Unwind_Exception_Class exceptionClass, _Unwind_Exception* exception, _Unwind_Context* context)
{
    return __gxx_personality_v0(version, actions, exceptionClass, exception, context);
}
}
