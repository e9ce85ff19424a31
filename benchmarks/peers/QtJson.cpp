#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

#include "../Measure.h"
#include "../forms/Json.h"

#include <stdexcept>
#include <string>

namespace QuarryBenchmarks {

namespace {

using Size = decltype(QByteArray().size());  // int in Qt 5

double addAll(const QJsonValue& value) {
  if (value.isDouble()) return value.toDouble();
  double sum = 0.0;
  if (value.isArray()) {
    for (const QJsonValue element : value.toArray())
      sum += addAll(element);
  } else if (value.isObject()) {
    for (const QJsonValue member : value.toObject())
      sum += addAll(member);
  }
  return sum;
}

/// JSON into a QJsonDocument.
struct QtJson {
  struct Tree {
    QJsonDocument document;
    QJsonObject root;
  };

  static Source convert(const Workload& workload) { return {makeJson(workload)}; }

  static void read(Tree& tree, const Source& source) {
    const auto size = static_cast<Size>(source.text.size());
    tree.document = QJsonDocument::fromJson(QByteArray::fromRawData(source.text.data(), size));
    tree.root = tree.document.object();
    if (tree.document.isNull()) throw std::runtime_error("broken JSON");
  }

  static double addNumbers(const Tree& tree, const Source&) { return addAll(tree.root); }

  static QByteArray write(const Tree& tree) {
    return tree.document.toJson(QJsonDocument::Indented);
  }

  static bool find(const Tree& tree, const std::string& name) {
    return tree.root.contains(QLatin1String(name.data(), static_cast<Size>(name.size())));
  }
};

const PeerRegistration registration(Measure<QtJson>::makePeer("Qt JSON"));

}  // namespace

}  // namespace QuarryBenchmarks
