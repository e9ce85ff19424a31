#include <QByteArray>
#include <QCborArray>
#include <QCborMap>
#include <QCborValue>
#include <QJsonDocument>
#include <QJsonObject>

#include "../Measure.h"
#include "../forms/Json.h"

#include <stdexcept>

namespace QuarryBenchmarks {

namespace {

using Size = decltype(QByteArray().size());  // int in Qt 5

double addAll(const QCborValue& value) {
  if (value.isInteger() || value.isDouble()) return value.toDouble();
  double sum = 0.0;
  if (value.isArray()) {
    for (const QCborValue element : value.toArray())
      sum += addAll(element);
  } else if (value.isMap()) {
    const QCborMap map = value.toMap();
    for (auto member = map.begin(); member != map.end(); ++member)
      sum += addAll(member.value());
  }
  return sum;
}

/// CBOR into a QCborValue. Its source is what Qt makes of the JSON.
struct QtCbor {
  static constexpr bool IS_BINARY = true;

  using Tree = QCborValue;

  static Source convert(const Workload& workload) {
    const QByteArray text = QByteArray::fromStdString(makeJson(workload));
    const QJsonObject root = QJsonDocument::fromJson(text).object();
    return {QCborMap::fromJsonObject(root).toCborValue().toCbor().toStdString()};
  }

  static void read(Tree& tree, const Source& source) {
    const auto size = static_cast<Size>(source.text.size());
    tree = QCborValue::fromCbor(QByteArray::fromRawData(source.text.data(), size));
    if (tree.isInvalid()) throw std::runtime_error("broken CBOR");
  }

  static double addNumbers(const Tree& tree, const Source&) { return addAll(tree); }

  static QByteArray encode(const Tree& tree) { return QCborValue(tree).toCbor(); }
};

const PeerRegistration registration(Measure<QtCbor>::makePeer("Qt CBOR"));

}  // namespace

}  // namespace QuarryBenchmarks
