#include "Peer.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace QuarryBenchmarks {

std::vector<Peer>& getPeers() {
  static std::vector<Peer> peers;
  return peers;
}

PeerRegistration::PeerRegistration(Peer peer) {
  const auto precedes = [](const Peer& one, const Peer& other) {
    return std::make_tuple(one.name != "Quarry", one.name) <
           std::make_tuple(other.name != "Quarry", other.name);
  };
  std::vector<Peer>& peers = getPeers();
  peers.insert(std::upper_bound(peers.begin(), peers.end(), peer, precedes), std::move(peer));
}

}  // namespace QuarryBenchmarks
