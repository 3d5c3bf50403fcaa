#pragma once

#include <ZuviSDK/Foundation/Observed.h>
#include <ZuviSDK/UIKit/UIButton.h>
#include "kit/Main/Private/ZVDocument.h"
#include "platform/UIKit/UITableView.h"

namespace zuvi {

class ZVDocumentTableViewCellDelegate {
public:
  virtual ~ZVDocumentTableViewCellDelegate() = default;
  virtual void tapAction(ZVDocument document) = 0;
};

/// One document in the document list.
class ZVDocumentTableViewCell : public UITableViewCell {
public:
  static constexpr const char* name = "ZVDocumentTableViewCell";
  static constexpr const char* id = "ZVDocumentCell";
  static constexpr double height = 66.0; ///< points

  ZVDocumentTableViewCell();

  std::weak_ptr<ZVDocumentTableViewCellDelegate> delegate;
  std::weak_ptr<UIButton> documentButton;
  std::weak_ptr<UIImageView> iconImageView;
  std::weak_ptr<UILabel> nameLabel, sideLabel;
  std::weak_ptr<NSLayoutConstraint> sideWidth, iconWidth;
  Observed<ZVDocument> document;

  void declareNib(NibDeclaration& nib) override;
  void awakeFromNib() override;
  void layoutSubviews() override;

private:
  void documentChanged();
  void tap();
};

} // namespace zuvi
