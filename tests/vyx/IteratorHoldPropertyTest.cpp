// Many iterators over two collections under random scripts: each goes the way of a plain model, and its
// member stays as it was. Nothing is left over at the end.

#include "support/Random.h"
#include "support/Records.h"
#include "support/Walks.h"

#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace {

struct HashKind {
  using Map = HashOf<unsigned>;
  using Record = HashRecord<unsigned>;
  using Order = TableOrder;
};
struct TreeKind {
  using Map = TreeOf<unsigned>;
  using Record = TreeRecord<unsigned>;
  using Order = std::less<unsigned>;
};

template <class Kind> class IteratorHoldProperty : public testing::Test {
protected:
  using Map = typename Kind::Map;
  using Record = typename Kind::Record;
  using Model = std::map<unsigned, int, typename Kind::Order>;

  struct Shelf {
    Map map;
    Model model;
  };
  // An iterator, and where the model has it.
  struct Reader {
    std::size_t shelf;
    typename Map::IteratorConst at;
    bool onMember;
    unsigned key;
    int value;
  };

  unsigned anyKey() { return random.below(60); }
  Shelf& anyShelf() { return shelves[random.below(2)]; }
  Reader& anyReader() { return *readers[random.below(static_cast<std::uint32_t>(readers.size()))]; }

  void insert() {
    Shelf& shelf = anyShelf();
    unsigned const key = anyKey();
    if (shelf.model.emplace(key, ++made).second) enter(shelf.map, key, made);
  }
  void remove() {
    Shelf& shelf = anyShelf();
    unsigned const key = anyKey();
    ASSERT_EQ(shelf.model.erase(key) != 0, static_cast<bool>(shelf.map._memberDel(key)));
  }
  // Removes the member under an iterator, which may have left before.
  void removeUnder() {
    Reader& reader = anyReader();
    if (!reader.onMember) return;
    Shelf& shelf = shelves[reader.shelf];
    ASSERT_EQ(shelf.model.erase(reader.key) != 0, static_cast<bool>(shelf.map._memberDel(reader.key)));
  }
  void place(Reader& reader, typename Model::const_iterator at) {
    reader.onMember = at != shelves[reader.shelf].model.end();
    reader.key = reader.onMember ? at->first : 0;
    reader.value = reader.onMember ? at->second : 0;
  }
  void begin() {
    std::size_t const which = random.below(2);
    unsigned const key = anyKey();
    Shelf& shelf = shelves[which];
    using At = typename Map::IteratorConst;
    bool const first = random.oneIn(2);
    readers.push_back(
        std::make_unique<Reader>(Reader{which, first ? At(shelf.map) : At(shelf.map, key), false, 0, 0}));
    place(*readers.back(), first ? shelf.model.begin() : shelf.model.lower_bound(key));
  }
  void step() {
    Reader& reader = anyReader();
    if (!reader.onMember) return;
    ++reader.at;
    place(reader, shelves[reader.shelf].model.upper_bound(reader.key));
  }
  void assign() { anyReader() = Reader(anyReader()); }
  void copy() { readers.push_back(std::make_unique<Reader>(anyReader())); }
  void end() {
    std::swap(readers[random.below(static_cast<std::uint32_t>(readers.size()))], readers.back());
    readers.pop_back();
  }

  void change() {
    switch (readers.size() < 3 ? 0 : random.below(12)) {
    case 0:
      return begin();
    case 1:
    case 2:
    case 3:
      return insert();
    case 4:
      return remove();
    case 5:
      return removeUnder();
    case 6:
      return assign();
    case 7:
      return readers.size() < 20 ? copy() : end();
    case 8:
      return end();
    default:
      return step();
    }
  }
  void check() {
    for (auto const& reader : readers) {
      ASSERT_EQ(reader->onMember, static_cast<bool>(reader->at));
      if (!reader->onMember) continue;
      ASSERT_EQ(reader->key, reader->at.key());
      ASSERT_EQ(reader->value, reader->at.current()->value());
    }
    for (Shelf const& shelf : shelves) ASSERT_EQ(shelf.model.size(), shelf.map.count());
  }

  Random random;
  int made = 0;
  Shelf shelves[2];
  std::vector<std::unique_ptr<Reader>> readers;
};

using Kinds = testing::Types<HashKind, TreeKind>;
TYPED_TEST_SUITE(IteratorHoldProperty, Kinds);

TYPED_TEST(IteratorHoldProperty, EachGoesTheWayOfTheModel) {
  for (int n = 0; n < 20000 && !this->HasFatalFailure(); ++n) {
    this->change();
    this->check();
  }
  this->readers.clear();
  EXPECT_EQ(static_cast<int>(this->shelves[0].map.count() + this->shelves[1].map.count()),
            TestFixture::Record::alive());
}

} // namespace
