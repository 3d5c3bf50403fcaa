// A Qt program. Its button runs a verification in a window of its own: in this process where Qt
// waits in GLib's loop, as the kit does, else by zuvi-verify.

#include "../CommandLine.h"

#include <QtWidgets>

#include <dlfcn.h>

namespace {

/// On Linux Qt's loop usually is GLib's. A theme of Qt's may have loaded GTK 3, beside which GTK 4
/// can't be.
bool canShareTheProcess() {
  const auto* loop = QAbstractEventDispatcher::instance();
  const bool gtk3 = dlopen("libgtk-3.so.0", RTLD_LAZY | RTLD_NOLOAD) != nullptr;
  return loop->inherits("QEventDispatcherGlib") && !gtk3 && gtk_init_check();
}

class Desk final : public QWidget {
public:
  Desk(const QJsonObject& request, bool shares) : request_(request), shares_(shares) {
    setWindowTitle("Front desk");
    resize(360, 120);
    auto* column = new QVBoxLayout(this);
    auto* button = new QPushButton("Verify the guest");
    column->addWidget(&outcome_, 0, Qt::AlignCenter);
    column->addWidget(button);
    new QShortcut(QKeySequence("Ctrl+Q"), this, [this] { close(); });
    connect(button, &QPushButton::clicked, this, [this] { start(); });
    connect(&program_, &QProcess::readyReadStandardOutput, this, [this] { readLines(); });
    connect(&program_, &QProcess::finished, this, [this] { programEnded(); });
    connect(&program_, &QProcess::errorOccurred, this, [this] { programEnded(); });
    outcome_.setText(shares ? "In this process" : "By zuvi-verify");
  }
  ~Desk() override {
    program_.disconnect();
    program_.kill(); // with its window
    program_.waitForFinished();
  }

private:
  void start() {
    if (!shares_) {
      if (program_.state() == QProcess::NotRunning) startProgram();
    } else if (std::exchange(isUnderWay_, true)) {
      zuvi::verify(nullptr, {}); // brings its window to the front
    } else {
      zuvi::verify(nullptr, [this](const zuvi::Verification& end) { tell(end); });
    }
  }

  void tell(const zuvi::Verification& end) {
    using Result = zuvi::Verification::Result;
    isUnderWay_ = false;
    if (end.result == Result::Verified)
      report("verified: " + QString::fromStdString(end.identityId));
    if (end.result == Result::Cancelled) report("cancelled");
    if (end.result == Result::Failed) report("failed: " + QString::fromStdString(end.problem));
  }

  void startProgram() {
    told_ = false;
    program_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    program_.start("zuvi-verify", {"--input", "-"});
    program_.write(QJsonDocument(request_).toJson()); // nothing personal on a command line
    program_.closeWriteChannel();
  }

  void readLines() {
    while (program_.canReadLine()) {
      const QJsonObject event = QJsonDocument::fromJson(program_.readLine()).object();
      if (event["event"] != "outcome") continue;
      const QString id = event["identityId"].toString(), problem = event["problem"].toString();
      told_ = true;
      report(event["result"].toString() + (id.isEmpty() && problem.isEmpty() ? "" : ": ") + id +
             problem);
    }
  }

  void programEnded() {
    if (!std::exchange(told_, true)) report("failed: " + program_.errorString());
  }

  void report(const QString& outcome) {
    outcome_.setText(outcome);
    QTextStream(stdout) << outcome << Qt::endl;
  }

  const QJsonObject request_;
  const bool shares_;
  bool isUnderWay_ = false; // in this process
  bool told_ = true;        // how the program ended
  QLabel outcome_;
  QProcess program_;
};

} // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  const bool shares = canShareTheProcess();
  QJsonObject request; // the same for zuvi-verify
  for (const char* name : {"--client-id", "--server", "--ca", "--cameras"})
    if (const char* value = option(argc, argv, name)) request[QString(name).mid(2)] = value;
  if (request["cameras"] == "simulated") request["cameras"] = "drawn";
  if (request.contains("server")) request["tracking"] = request["server"].toString() + "track/";
  if (shares) zuvi::ZVKYC::registerWithClientId(readCommandLine(argc, argv));
  Desk desk(request, shares);
  desk.show();
  return application.exec();
}
