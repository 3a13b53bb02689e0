#pragma once

#include "../Foundation/Foundation.h"

#include <stdint.h>

@class SPUUpdater, SUUpdatePermissionResponse;

typedef enum : NSInteger {
    SPUUserUpdateChoiceSkip,
    SPUUserUpdateChoiceInstall,
    SPUUserUpdateChoiceDismiss
} SPUUserUpdateChoice;
typedef enum : NSInteger {
    SPUUserUpdateStageNotDownloaded,
    SPUUserUpdateStageDownloaded,
    SPUUserUpdateStageInstalling
} SPUUserUpdateStage;

@interface SPUUpdatePermissionRequest : NSObject
@end
@interface SUUpdatePermissionResponse : NSObject
- (instancetype)initWithAutomaticUpdateChecks:(BOOL)automaticUpdateChecks
                            sendSystemProfile:(BOOL)sendSystemProfile;
@end
@interface SUAppcastItem : NSObject
@property(copy, readonly) NSString *displayVersionString;
@property(copy, readonly) NSString *itemDescription;
@property(copy, readonly) NSString *itemDescriptionFormat;
@end
@interface SPUUserUpdateState : NSObject
@property(nonatomic, readonly) SPUUserUpdateStage stage;
@property(nonatomic, readonly) BOOL userInitiated;
@end
@interface SPUDownloadData : NSObject
@property(nonatomic, readonly) NSData *data;
@property(nonatomic, readonly, copy) NSString *MIMEType;
@end

@protocol SPUUserDriver <NSObject>
- (void)showUpdatePermissionRequest:(SPUUpdatePermissionRequest *)request
                              reply:(void (^)(SUUpdatePermissionResponse *))reply;
- (void)showUserInitiatedUpdateCheckWithCancellation:(void (^)(void))cancellation;
- (void)showUpdateFoundWithAppcastItem:(SUAppcastItem *)appcastItem
                                 state:(SPUUserUpdateState *)state
                                 reply:(void (^)(SPUUserUpdateChoice))reply;
- (void)showUpdateReleaseNotesWithDownloadData:(SPUDownloadData *)downloadData;
- (void)showUpdateReleaseNotesFailedToDownloadWithError:(NSError *)error;
- (void)showUpdateNotFoundWithError:(NSError *)error
                    acknowledgement:(void (^)(void))acknowledgement;
- (void)showUpdaterError:(NSError *)error acknowledgement:(void (^)(void))acknowledgement;
- (void)showDownloadInitiatedWithCancellation:(void (^)(void))cancellation;
- (void)showDownloadDidReceiveExpectedContentLength:(uint64_t)expectedContentLength;
- (void)showDownloadDidReceiveDataOfLength:(uint64_t)length;
- (void)showDownloadDidStartExtractingUpdate;
- (void)showExtractionReceivedProgress:(double)progress;
- (void)showReadyToInstallAndRelaunch:(void (^)(SPUUserUpdateChoice))reply;
- (void)showInstallingUpdateWithApplicationTerminated:(BOOL)applicationTerminated
                          retryTerminatingApplication:(void (^)(void))retryTerminatingApplication;
- (void)showUpdateInstalledAndRelaunched:(BOOL)relaunched
                         acknowledgement:(void (^)(void))acknowledgement;
- (void)showUpdateInFocus;
- (void)dismissUpdateInstallation;
@end

@protocol SPUUpdaterDelegate <NSObject>
@optional
- (NSString *)feedURLStringForUpdater:(SPUUpdater *)updater;
@end

@interface SPUUpdater : NSObject
- (instancetype)initWithHostBundle:(NSBundle *)hostBundle
                 applicationBundle:(NSBundle *)applicationBundle
                        userDriver:(id<SPUUserDriver>)userDriver
                          delegate:(id<SPUUpdaterDelegate>)delegate;
- (BOOL)startUpdater:(NSError *__autoreleasing *)error;
- (void)checkForUpdates;
@property(nonatomic) BOOL automaticallyChecksForUpdates;
@property(nonatomic) BOOL automaticallyDownloadsUpdates;
@property(nonatomic) NSTimeInterval updateCheckInterval;
@end
