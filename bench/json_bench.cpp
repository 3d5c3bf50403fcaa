// What the kit does with JSON, per operation, beside the JSON library alone on the same bytes.

#include "kit/Helper/ZVJSONHandler.h"
#include "kit/Main/Private/ZVKYCMerchant.h"
#include "kit/Main/Private/ZVOCRResult.h"
#include "platform/Foundation/JSONSerialization.h"

#include <benchmark/benchmark.h>
#include <nlohmann/json.hpp>

using namespace zuvi;

namespace {

const Value::Dictionary& event() {
  static const Value::Dictionary payload{
      {"event", "zuvi_liveness_record_clicked"},
      {"properties", Value::Dictionary{{"$app_release", "1.0"},
                                       {"$app_version", "1"},
                                       {"$app_build_number", "1"},
                                       {"$app_version_string", "1.0"},
                                       {"$model", "x86_64"},
                                       {"$lib_version", "3.1.6"},
                                       {"$manufacturer", "Apple"},
                                       {"mp_lib", "iphone"},
                                       {"mp_device_model", "x86_64"},
                                       {"$os_version", "6.1.0-18-amd64"},
                                       {"$os", "iOS"},
                                       {"$radio", "None"},
                                       {"$screen_height", 812.0},
                                       {"$screen_width", 375.0},
                                       {"distinct_id", "5F0C6D4B-8F1E-4B57-9D3E-0C8A6E0B3A11"},
                                       {"token", "0f3ab9d17c2e46a8b5d90e7f1c64a382"},
                                       {"$region", "Germany"},
                                       {"$country_code", "Germany"}}}};
  return payload;
}

const char* const merchantAnswer =
    R"({"name":"Harbour Rentals","photo":"https://host/logo.png","configurations":[{"color":"green",)"
    R"("language":"fr","documents":{"required":["national-id","passport"],)"
    R"("optional":["driving-license","proof-of-residency"]}}]})";

const char* const fieldsAnswer =
    R"({"id":"d-1","metadata":{"cardType":"B"},"fields":[)"
    R"({"id":"fullName","label":"Full name","required":true,"value":"Ana Ruiz"},)"
    R"({"id":"number","label":"Number","required":true,"value":"X1234567"},)"
    R"({"id":"birthDate","label":"Born","required":true,"value":"1990-02-03"},)"
    R"({"id":"address","label":"Address","required":false,"value":"Harbour 3"}]})";

void encodeAPIData(benchmark::State& state) {
  for (auto _ : state)
    benchmark::DoNotOptimize(ZVJSONHandler::encodeAPIData(event()));
}
BENCHMARK(encodeAPIData);

void encodeLibraryAlone(benchmark::State& state) {
  const auto json =
      nlohmann::json::parse(JSONSerialization::data(event())->view()); // the same payload
  for (auto _ : state)
    benchmark::DoNotOptimize(json.dump());
}
BENCHMARK(encodeLibraryAlone);

void parseMerchant(benchmark::State& state) {
  for (auto _ : state)
    benchmark::DoNotOptimize(
        ZVKYCMerchant(*JSONSerialization::jsonObject(merchantAnswer)->dictionary()));
}
BENCHMARK(parseMerchant);

void parseFields(benchmark::State& state) {
  for (auto _ : state) {
    const auto answer = JSONSerialization::jsonObject(fieldsAnswer);
    const auto fields = answer->dictionary()->at("fields").listOfDictionaries();
    for (const auto& field : *fields)
      benchmark::DoNotOptimize(ZVOCRResult(field, "C"));
  }
}
BENCHMARK(parseFields);

void parseLibraryAlone(benchmark::State& state, const char* text) {
  for (auto _ : state)
    benchmark::DoNotOptimize(nlohmann::json::parse(text));
}
BENCHMARK_CAPTURE(parseLibraryAlone, merchant, merchantAnswer);
BENCHMARK_CAPTURE(parseLibraryAlone, fields, fieldsAnswer);

} // namespace

BENCHMARK_MAIN();
