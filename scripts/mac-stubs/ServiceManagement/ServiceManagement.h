#pragma once

#include "../Foundation/Foundation.h"

typedef enum : NSInteger {
    SMAppServiceStatusNotRegistered,
    SMAppServiceStatusEnabled,
    SMAppServiceStatusRequiresApproval,
    SMAppServiceStatusNotFound
} SMAppServiceStatus;

API_SINCE(13.0)
@interface SMAppService : NSObject
@property(class, readonly, strong) SMAppService *mainAppService;
@property(readonly) SMAppServiceStatus status;
- (BOOL)registerAndReturnError:(NSError **)error;
- (BOOL)unregisterAndReturnError:(NSError **)error;
+ (void)openSystemSettingsLoginItems;
@end
