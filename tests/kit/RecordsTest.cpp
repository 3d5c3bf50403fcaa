// What the back end says, as records.

#include "tests/kit/KitTest.h"

namespace zuvi {
namespace {

std::string inWords(const ZVKYCMerchant& merchant) {
  std::string text = merchant.displayName.value_or("-") + " " + merchant.photoUrl.value_or("-") +
                     " " + textFromColor(merchant.color) + " " + rawValue(merchant.currentLanguage);
  for (const auto* documents : {&merchant.requiredDocuments, &merchant.optionalDocuments}) {
    text += " [";
    for (const ZVDocument document : *documents)
      text += " " + rawValue(document);
    text += " ]";
  }
  return text;
}

class RecordsTest : public KitTest {};

TEST_F(RecordsTest, ReadsMerchantsFieldByField) {
  const std::string standard = "- - #2196F3 en [ national-id ] [ ]";
  const std::string noDocuments = "- - #2196F3 en [ ] [ ]";
  const auto configured = [](const std::string& inside) {
    return R"({"configurations":[{)" + inside + "}]}";
  };
  const auto listing = [&](const std::string& inside) {
    return configured(R"("documents":{)" + inside + "}");
  };
  const struct {
    std::string json, expected;
  } rows[] = {
      {"{}", standard},
      {R"({"name":"N","photo":"p"})", "N p #2196F3 en [ national-id ] [ ]"},
      {R"({"name":7,"photo":["p"],"configurations":{}})", standard},
      {R"({"name":"N","configurations":[]})", "N - #2196F3 en [ national-id ] [ ]"},
      {R"({"configurations":"x"})", standard},
      {R"({"configurations":[{"color":"red"},7]})", standard}, // not a list of objects
      {R"({"configurations":[{},{"color":"red","documents":{}}]})", standard}, // only the first
      {configured(""), standard},
      {configured(R"("color":"Green","language":"pt-BR")"), standard},
      {configured(R"("color":1,"language":true,"documents":[])"), standard},
      {configured(R"("color":"blue")"), standard},
      {configured(R"("color":"green","language":"pt")"), "- - #00B257 pt [ national-id ] [ ]"},
      {configured(R"("color":"red","language":"es")"), "- - #EB5757 es [ national-id ] [ ]"},
      {configured(R"("color":"pink","language":"fr")"), "- - #FF527E fr [ national-id ] [ ]"},
      {configured(R"("color":"orange","language":"FR")"), "- - #F2994A en [ national-id ] [ ]"},
      {configured(R"("color":"yellow","language":"en")"), "- - #FFBD00 en [ national-id ] [ ]"},
      {listing(""), noDocuments},
      {listing(R"("required":"passport","optional":{})"), noDocuments},
      {listing(R"("required":["passport",7])"), noDocuments}, // not a list of strings
      {listing(R"("required":["passport","x","passport"],"optional":["Passport"])"),
       "- - #2196F3 en [ passport passport ] [ ]"},
      {listing(R"("required":["driving-license","proof-of-residency"],)"
               R"("optional":["national-id","driving-license"])"),
       "- - #2196F3 en [ driving-license proof-of-residency ] [ national-id driving-license ]"},
  };
  EXPECT_EQ(inWords(ZVKYCMerchant()), standard);
  for (const auto& row : rows)
    EXPECT_EQ(inWords(ZVKYCMerchant(dictionary(row.json))), row.expected) << row.json;
}

TEST_F(RecordsTest, ReadsFieldsOfDocuments) {
  const struct {
    std::string json, card, expected; // id, label, value, required, image name
  } rows[] = {
      {"{}", "D", "- - - 0 d_"},
      {R"({"id":"fullName","label":"Name","value":"Ana","required":true})", "D",
       "fullName Name Ana 1 d_fullname"},
      {R"({"id":7,"label":null,"value":3,"required":1})", "C", "- - - 0 c_"},
      {R"({"id":"ÉTAT","required":"true","value":""})", "Ü", "ÉTAT -  0 ü_état"},
  };
  for (const auto& row : rows) {
    const ZVOCRResult result(dictionary(row.json), row.card);
    EXPECT_EQ(result.id().value_or("-") + " " + result.label().value_or("-") + " " +
                  result.value.value_or("-") + " " + std::to_string(result.isRequired()) + " " +
                  result.imageName(),
              row.expected)
        << row.json;
  }
}

} // namespace
} // namespace zuvi
