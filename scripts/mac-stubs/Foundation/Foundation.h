#pragma once

#include "../CoreFoundation/CoreFoundation.h"
#include "../TargetConditionals.h"

typedef signed char BOOL;
#define YES __objc_yes
#define NO __objc_no
#define nil nullptr
#define NS_OPTIONS(type, name) enum name : type

typedef long NSInteger;
typedef unsigned long NSUInteger;
typedef double NSTimeInterval;
typedef double CGFloat;
struct CGPoint {
    CGFloat x;
    CGFloat y;
};
struct CGSize {
    CGFloat width;
    CGFloat height;
};
struct CGRect {
    CGPoint origin;
    CGSize size;
};
typedef struct CGPoint NSPoint;
typedef struct CGSize NSSize;
typedef struct CGRect NSRect;
typedef struct _NSZone NSZone;
struct NSRange {
    NSUInteger location;
    NSUInteger length;
};

@class NSArray<ObjectType>;
@class NSDictionary<KeyType, ObjectType>;
@class NSSet<ObjectType>;
@class NSString, NSError, NSURL, NSData, NSDate, NSNumber, NSNotification, NSOperationQueue,
    NSBundle;

@protocol NSObject
- (BOOL)isEqual:(id)object;
- (BOOL)isKindOfClass:(Class)aClass;
- (BOOL)respondsToSelector:(SEL)aSelector;
@property(readonly, copy) NSString *description;
@end
@protocol NSCopying
- (id)copyWithZone:(NSZone *)zone;
@end
@protocol NSFastEnumeration
struct NSFastEnumerationState {
    unsigned long state;
    id __unsafe_unretained *itemsPtr;
    unsigned long *mutationsPtr;
    unsigned long extra[5];
};
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState *)state
                                  objects:(id __unsafe_unretained[])buffer
                                    count:(NSUInteger)length;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject>
+ (instancetype)alloc;
+ (instancetype)new;
+ (Class)class;
- (instancetype)init;
- (id)copy;
@end

@interface NSString : NSObject <NSCopying>
+ (instancetype)stringWithUTF8String:(const char *)bytes;
+ (instancetype)stringWithFormat:(NSString *)format,
                                 ... __attribute__((format(__NSString__, 1, 2)));
@property(readonly) const char *UTF8String;
@property(readonly) NSUInteger length;
- (BOOL)isEqualToString:(NSString *)other;
- (NSString *)stringByAppendingString:(NSString *)other;
@end

@interface NSNumber : NSObject <NSCopying>
+ (NSNumber *)numberWithInt:(int)value;
+ (NSNumber *)numberWithUnsignedInt:(unsigned int)value;
+ (NSNumber *)numberWithLong:(long)value;
+ (NSNumber *)numberWithUnsignedLong:(unsigned long)value;
+ (NSNumber *)numberWithDouble:(double)value;
+ (NSNumber *)numberWithBool:(BOOL)value;
@property(readonly) NSInteger integerValue;
@property(readonly) double doubleValue;
@property(readonly) BOOL boolValue;
@end

@interface NSArray<__covariant ObjectType> : NSObject <NSCopying, NSFastEnumeration>
+ (instancetype)array;
+ (instancetype)arrayWithObjects:(const ObjectType[])objects count:(NSUInteger)count;
- (ObjectType)objectAtIndexedSubscript:(NSUInteger)index;
@property(readonly) NSUInteger count;
@property(readonly) ObjectType firstObject;
@end
@interface NSMutableArray<ObjectType> : NSArray <ObjectType>
- (void)addObject:(ObjectType)object;
@end
@interface NSSet<__covariant ObjectType> : NSObject <NSCopying, NSFastEnumeration>
+ (instancetype)setWithObject:(ObjectType)object;
+ (instancetype)setWithArray:(NSArray<ObjectType> *)objects;
@end
@interface NSDictionary<__covariant KeyType, __covariant ObjectType> : NSObject <NSCopying>
+ (instancetype)dictionaryWithObjects:(const ObjectType[])objects
                              forKeys:(const KeyType<NSCopying>[])keys
                                count:(NSUInteger)count;
- (ObjectType)objectForKeyedSubscript:(KeyType)key;
@end

@interface NSData : NSObject
+ (instancetype)dataWithBytes:(const void *)bytes length:(NSUInteger)length;
@property(readonly) const void *bytes;
@property(readonly) NSUInteger length;
@end
@interface NSDate : NSObject
+ (instancetype)dateWithTimeIntervalSince1970:(NSTimeInterval)seconds;
@property(readonly) NSTimeInterval timeIntervalSince1970;
@end
@interface NSDateComponents : NSObject
@property NSInteger year;
@property NSInteger month;
@property NSInteger day;
@property NSInteger weekday;
@property NSInteger hour;
@property NSInteger minute;
@end
@interface NSError : NSObject
@property(readonly) NSInteger code;
@property(readonly, copy) NSString *domain;
@property(readonly, copy) NSString *localizedDescription;
@end
@interface NSURL : NSObject <NSCopying>
+ (instancetype)URLWithString:(NSString *)text;
+ (NSURL *)fileURLWithPath:(NSString *)path;
+ (NSURL *)fileURLWithPath:(NSString *)path isDirectory:(BOOL)isDirectory;
@property(readonly, copy) NSString *absoluteString;
@property(readonly, copy) NSString *path;
@end

@interface NSBundle : NSObject
@property(class, readonly, strong) NSBundle *mainBundle;
+ (instancetype)bundleWithURL:(NSURL *)url;
@property(readonly, copy) NSString *bundleIdentifier;
@property(readonly, copy) NSString *bundlePath;
@property(readonly, copy) NSDictionary<NSString *, id> *infoDictionary;
@end
@interface NSFileManager : NSObject
@property(class, readonly, strong) NSFileManager *defaultManager;
- (NSURL *)containerURLForSecurityApplicationGroupIdentifier:(NSString *)identifier;
@end

@interface NSOperationQueue : NSObject
@property(class, readonly, strong) NSOperationQueue *mainQueue;
@end
@interface NSNotification : NSObject
@property(readonly, copy) NSString *name;
@property(readonly, strong) id object;
@end
typedef NSString *NSNotificationName;
@interface NSNotificationCenter : NSObject
@property(class, readonly, strong) NSNotificationCenter *defaultCenter;
- (id<NSObject>)addObserverForName:(NSNotificationName)name
                            object:(id)object
                             queue:(NSOperationQueue *)queue
                        usingBlock:(void (^)(NSNotification *note))block;
- (void)addObserver:(id)observer
           selector:(SEL)selector
               name:(NSNotificationName)name
             object:(id)object;
- (void)removeObserver:(id)observer;
@end
typedef enum : NSUInteger {
    NSNotificationSuspensionBehaviorDrop = 1,
    NSNotificationSuspensionBehaviorCoalesce = 2,
    NSNotificationSuspensionBehaviorHold = 3,
    NSNotificationSuspensionBehaviorDeliverImmediately = 4
} NSNotificationSuspensionBehavior;
@interface NSDistributedNotificationCenter : NSNotificationCenter
+ (NSDistributedNotificationCenter *)defaultCenter;
- (void)addObserver:(id)observer
              selector:(SEL)selector
                  name:(NSNotificationName)name
                object:(NSString *)object
    suspensionBehavior:(NSNotificationSuspensionBehavior)behavior;
- (void)postNotificationName:(NSNotificationName)name
                      object:(NSString *)object
                    userInfo:(NSDictionary *)userInfo
          deliverImmediately:(BOOL)deliverImmediately;
@end

typedef unsigned int OSType;
enum : OSType {
    kAEOpenApplication = 0x6f617070,
    keyAEPropData = 0x70726474,
    keyAELaunchedAsLogInItem = 0x6c676974
};
@interface NSAppleEventDescriptor : NSObject
@property(readonly, copy) NSString *stringValue;
@property(readonly) OSType eventID;
@property(readonly) OSType enumCodeValue;
- (NSAppleEventDescriptor *)paramDescriptorForKeyword:(OSType)keyword;
@property(readonly) NSInteger numberOfItems;
- (NSAppleEventDescriptor *)descriptorAtIndex:(NSInteger)index;
@end
@interface NSAppleEventManager : NSObject
+ (NSAppleEventManager *)sharedAppleEventManager;
@property(readonly, strong) NSAppleEventDescriptor *currentAppleEvent;
@end
@interface NSAppleScript : NSObject
- (instancetype)initWithSource:(NSString *)source;
- (NSAppleEventDescriptor *)executeAndReturnError:(NSDictionary<NSString *, id> **)error;
@end

inline CFTypeRef CFBridgingRetain(id object) { return (__bridge_retained CFTypeRef)object; }
inline id CFBridgingRelease(CFTypeRef __attribute__((cf_consumed)) object) {
    return (__bridge_transfer id)object;
}
extern "C" void NSLog(NSString *format, ...) __attribute__((format(__NSString__, 1, 2)));

typedef struct dispatch_queue_s *dispatch_queue_t;
typedef void (^dispatch_block_t)(void);
extern "C" dispatch_queue_t dispatch_get_main_queue(void);
extern "C" void dispatch_async(dispatch_queue_t queue, dispatch_block_t block);
