#pragma once

/// @namespace zuvi
/// All that a host uses is in this namespace. `ZVKYC` is the door to the flow, `ZVKYCButton` starts
/// it, `ZVKYCDelegate` hears how it ended; `LiveChat` is the support chat, `HostCameraProvider`
/// puts cameras in the place of the machine's. The rest is what screens of the host's own are made
/// of, from `UIView` and `UIViewController` up.
///
/// Classes whose objects are held by shared pointers are made with `make`. Delegates are held
/// weakly: the host keeps them alive.

// The headers that this one reaches are the public ones.

// The flow: its door, its button, how it ends, where its services are.
#include "kit/Main/Private/ZVEndpoints.h"
#include "kit/Main/Public/ZVKYC.h"
#include "kit/Main/Public/ZVKYCButton.h"
#include "kit/Main/Public/ZVKYCDelegate.h"

// The support chat.
#include "kit/Helper/LiveChat/LiveChat.h"
#include "kit/Helper/LiveChat/LiveChatMessage.h"

// Cameras of the host's choice.
#include "platform/AVFoundation/AVCaptureDevice.h"
#include "platform/AVFoundation/HostCameraProvider.h"
#include "platform/AVFoundation/SystemCameraProvider.h"

// Where the flow shows, and what drives it.
#include "platform/Dispatch/MainLoop.h"
#include "platform/UIKit/OffscreenSurface.h"
#include "platform/UIKit/ScreenWidget.h"
#include "platform/UIKit/UIApplication.h"
#include "platform/UIKit/UIScreen.h"

// Screens of the host's own.
#include "platform/Dispatch/DelayedCalls.h"
#include "platform/Foundation/Bundle.h"
#include "platform/Foundation/Make.h"
#include "platform/Foundation/NotificationCenter.h"
#include "platform/Foundation/Print.h"
#include "platform/Foundation/Timer.h"
#include "platform/Foundation/UserDefaults.h"
#include "platform/UIKit/UIActivityIndicatorView.h"
#include "platform/UIKit/UIAlertController.h"
#include "platform/UIKit/UIButton.h"
#include "platform/UIKit/UIImageView.h"
#include "platform/UIKit/UILabel.h"
#include "platform/UIKit/UINavigationController.h"
#include "platform/UIKit/UINib.h"
#include "platform/UIKit/UIPageControl.h"
#include "platform/UIKit/UIScrollView.h"
#include "platform/UIKit/UITabBarController.h"
#include "platform/UIKit/UITableView.h"
#include "platform/UIKit/UITextField.h"
#include "platform/UIKit/UIViewController.h"
#include "platform/UIKit/UIWindow.h"
#include "platform/WebKit/WKWebView.h"
