#pragma once

// Screens of the host's own. Views are derived from `UIView`, screens from `UIViewController`; of
// the other classes a host uses what bears `ZUVI_API`.

// Views, and the launch button, which is one.
#include <ZuviSDK/QuartzCore/AnimationCurve.h>
#include <ZuviSDK/QuartzCore/CALayer.h>
#include <ZuviSDK/QuartzCore/DrawingContext.h>
#include <ZuviSDK/UIKit/KeyPress.h>
#include <ZuviSDK/UIKit/UIActivityIndicatorView.h>
#include <ZuviSDK/UIKit/UIButton.h>
#include <ZuviSDK/UIKit/UIImageView.h>
#include <ZuviSDK/UIKit/UILabel.h>
#include <ZuviSDK/UIKit/UINib.h>
#include <ZuviSDK/ZVKYCButton.h>

// Screens, and the windows that they are shown in.
#include <ZuviSDK/UIKit/UIAlertController.h>
#include <ZuviSDK/UIKit/UIApplication.h>
#include <ZuviSDK/UIKit/UINavigationController.h>
#include <ZuviSDK/UIKit/UITabBarController.h>
#include <ZuviSDK/UIKit/UIViewController.h>
#include <ZuviSDK/UIKit/UIWindow.h>

// Time and events.
#include <ZuviSDK/Dispatch/DelayedCalls.h>
#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include <ZuviSDK/Foundation/Make.h>
#include <ZuviSDK/Foundation/NotificationCenter.h>
#include <ZuviSDK/Foundation/Timer.h>
