// A start of an application: instance_probe ROOT FOLDER MESSAGE. Prints how it went; when it is the first, stays and
// prints the messages that it gets.

#include "platform/qt/SingleInstance.h"

#include <QCoreApplication>
#include <iostream>

int main(int argc, char** argv) {
  using Start = cirrovane::SingleInstance::Start;
  if (argc != 4) {
    std::cerr << "instance_probe ROOT FOLDER MESSAGE\n";
    return 2;
  }
  const QCoreApplication application(argc, argv);
  cirrovane::SingleInstance instance(argv[1], argv[2]);
  const Start start = instance.start(argv[3], std::chrono::seconds(30));
  if (start != Start::first) {
    std::cout << (start == Start::received ? "received" : "unanswered") << std::endl;
    return 0;
  }
  std::cout << "first" << std::endl;
  instance.onMessage([](const std::string& message) { std::cout << message << std::endl; });
  return QCoreApplication::exec();
}
