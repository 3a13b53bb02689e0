#pragma once

#include "../CoreFoundation/CoreFoundation.h"

typedef struct OpaqueEventTargetRef *EventTargetRef;
typedef struct OpaqueEventHandlerRef *EventHandlerRef;
typedef struct OpaqueEventHandlerCallRef *EventHandlerCallRef;
typedef struct OpaqueEventRef *EventRef;
typedef struct EventHotKeyRef__ *EventHotKeyRef;
typedef OSStatus (*EventHandlerUPP)(EventHandlerCallRef next, EventRef event, void *data);
typedef UInt32 OptionBits;
typedef OSType EventParamName;
typedef OSType EventParamType;

struct EventTypeSpec {
    OSType eventClass;
    UInt32 eventKind;
};
struct EventHotKeyID {
    OSType signature;
    UInt32 id;
};

enum : UInt32 {
    kEventClassKeyboard = 'keyb',
    kEventHotKeyPressed = 5,
    kEventParamDirectObject = '----',
    typeEventHotKeyID = 'hkid',
    cmdKey = 0x100,
    shiftKey = 0x200,
    optionKey = 0x800,
    controlKey = 0x1000
};
enum : OSStatus { eventNotHandledErr = -9874, eventHotKeyExistsErr = -9878 };

extern "C" {
EventTargetRef GetApplicationEventTarget(void);
OSStatus InstallEventHandler(EventTargetRef target, EventHandlerUPP handler, ItemCount typeCount,
                             const EventTypeSpec *types, void *data, EventHandlerRef *made);
OSStatus RemoveEventHandler(EventHandlerRef handler);
OSStatus RegisterEventHotKey(UInt32 keyCode, UInt32 modifiers, EventHotKeyID id,
                             EventTargetRef target, OptionBits options, EventHotKeyRef *made);
OSStatus UnregisterEventHotKey(EventHotKeyRef key);
OSStatus GetEventParameter(EventRef event, EventParamName name, EventParamType desired,
                           EventParamType *actual, ByteCount bufferSize, ByteCount *size,
                           void *data);
}
