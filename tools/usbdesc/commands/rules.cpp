#include <memory>
#include <string>
#include <vector>

#include <tools/usbdesc/commands.h>
#include <tools/usbdesc/log_text.h>
#include <tools/usbdesc/options.h>
#include <tools/usbdesc/suite_run.h>
#include <tools/usbdesc/views/rules.h>
#include <usb_rules/catalogue.h>
#include <usb_support/suite_interfaces/tq_logger.h>

namespace usb_support::usbdesc {

Action DefineRules(Options& parser) {
  auto const starts = std::make_shared<std::vector<std::string>>();
  parser.Arguments("ID|PREFIX", *starts, "Rules to show, by their ids or how these begin");
  return [starts](Console const& console) {
    SuiteRun const run(console, {});
    for (std::string const& start : starts->empty() ? std::vector<std::string>{""} : *starts) {
      usb_rules::Rule const* const rule = usb_rules::FindRule(start);
      Line const text = rule != nullptr ? RuleText(*rule) : RulesText(start);
      if (text.Text().empty()) {
        throw UsageError(start + ": no rule has an id that begins so (see usbdesc rules)");
      }
      Log(text);
    }
    FlushOutput(true);
    return kExitGood;
  };
}

}  // namespace usb_support::usbdesc
