#pragma once

/// @namespace zuvi
/// All that a host uses is in this namespace. `ZVKYC` is the door to the flow, `ZVKYCButton` starts
/// it, `ZVKYCDelegate` hears how it ended; `LiveChat` is the support chat, `HostCameraProvider`
/// puts cameras in the place of the machine's. `ZuviUI.h` has what screens of the host's own are
/// made of, from `UIView` and `UIViewController` up.
///
/// Classes whose objects are held by shared pointers are made with `make`. Delegates are held
/// weakly: the host keeps them alive.

// The flow: its door, its button, how it ends, where its services are.
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

// Where the flow shows, and what drives it; what the host says about itself, and where lines go.
#include <ZuviSDK/Dispatch/MainLoop.h>
#include <ZuviSDK/Foundation/Bundle.h>
#include <ZuviSDK/Foundation/Print.h>
#include <ZuviSDK/UIKit/ScreenWidget.h>
