#pragma once

/// @namespace zuvi
/// Everything that a host uses is in this namespace. `ZVKYC` registers the host, `launchButtonNew`
/// makes a button that starts the flow in a window, `verify` starts it without that button. In a
/// panel or a kiosk `screenWidgetNew` shows the flow, `ZVKYCButton` starts it and `ZVKYCDelegate`
/// gets its result. `LiveChat` is the support chat,
/// `HostCameraProvider` replaces the machine's cameras. `ZuviUI.h` has the classes for screens of
/// the host's own, such as `UIView` and `UIViewController`.
///
/// Classes whose objects are held by shared pointers are made with `make`. Delegates are held
/// weakly: the host keeps them alive.

// The flow: registration, button, result, addresses of its services.
#include <ZuviSDK/Verification.h>
#include <ZuviSDK/ZVEndpoints.h>
#include <ZuviSDK/ZVKYC.h>
#include <ZuviSDK/ZVKYCButton.h>
#include <ZuviSDK/ZVKYCDelegate.h>

// The support chat.
#include <ZuviSDK/LiveChat.h>
#include <ZuviSDK/LiveChatDelegate.h>
#include <ZuviSDK/LiveChatMessage.h>

// Cameras of the host's choice.
#include <ZuviSDK/AVFoundation/AVCaptureDevice.h>
#include <ZuviSDK/AVFoundation/HostCameraProvider.h>
#include <ZuviSDK/AVFoundation/SystemCameraProvider.h>

// The widget that shows the flow, the main loop, the host's version, and printed lines.
#include <ZuviSDK/Dispatch/MainLoop.h>
#include <ZuviSDK/Foundation/Bundle.h>
#include <ZuviSDK/Foundation/Print.h>
#include <ZuviSDK/UIKit/ScreenWidget.h>
