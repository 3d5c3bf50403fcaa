#include "platform/UIKit/StandardNibClasses.h"

#include <ZuviSDK/UIKit/UIActivityIndicatorView.h>
#include <ZuviSDK/UIKit/UIButton.h>
#include <ZuviSDK/UIKit/UIImageView.h>
#include <ZuviSDK/UIKit/UILabel.h>
#include "platform/UIKit/UIPageControl.h"
#include "platform/UIKit/UIScrollView.h"
#include "platform/UIKit/UITableView.h"
#include "platform/UIKit/UITextField.h"

namespace zuvi {

std::map<std::string, std::function<std::shared_ptr<UIView>()>> standardNibClasses() {
  return {{"UIView", [] { return make<UIView>(); }},
          {"UILabel", [] { return make<UILabel>(); }},
          {"UIButton", [] { return make<UIButton>(); }},
          {"UIImageView", [] { return make<UIImageView>(); }},
          {"UIPageControl", [] { return make<UIPageControl>(); }},
          {"UIActivityIndicatorView", [] { return make<UIActivityIndicatorView>(); }},
          {"UIScrollView", [] { return make<UIScrollView>(); }},
          {"UITableView", [] { return make<UITableView>(); }},
          {"UITextField", [] { return make<UITextField>(); }}};
}

} // namespace zuvi
