#include "foundation/mirel/util/ContainerTest.h"

#include <mirel/base/MemoryException.h>
#include <mirel/base/Ref.h>

namespace tests {
namespace {

using mirel::base::CBase;
using mirel::base::CMemoryException;
using mirel::base::CNull;
using mirel::base::CNullReferenceException;
using mirel::base::CRef;
using mirel::base::CRefCountedPtr;

// An object that references hold.
struct Target : CBase {
  explicit Target(int value) : counted(value) {}
  Counted counted;
};

struct Fields {
  CRefCountedPtr<Target>* block;
  Target* object;
};

struct Handle {
  virtual ~Handle() = default;
  CRef<Target> ref;
};

static_assert(sizeof(CRef<Target>) == 16);
static_assert(sizeof(Handle) == 24, "a handle is its table of virtual functions and a reference");

unsigned int CountOf(const CRef<Target>& ref) { return FieldsOf<Fields>(ref).block->GetCount(); }

class RefTest : public ContainerTest {};

TEST_F(RefTest, DefaultIsEmptyAndAllocatesNothing) {
  CRef<Target> ref;
  EXPECT_EQ(FieldsOf<Fields>(ref).block, nullptr);
  EXPECT_EQ(FieldsOf<Fields>(ref).object, nullptr);
  EXPECT_TRUE(ref == CNull());
  EXPECT_FALSE(ref != CNull());
  EXPECT_EQ(allocations.Made(), 0);
}

TEST_F(RefTest, NullPointerMakesAnEmptyReferenceAndAllocatesNothing) {
  CRef<Target> ref(static_cast<Target*>(nullptr));
  EXPECT_EQ(FieldsOf<Fields>(ref).block, nullptr);
  EXPECT_TRUE(ref == CNull());
  EXPECT_EQ(allocations.Made(), 0);
}

TEST_F(RefTest, UsingAnEmptyReferenceThrows) {
  const CRef<Target> ref;
  EXPECT_EQ(FailureOf([&] { ref->counted.Value(); }), Throws<CNullReferenceException>("mirel/base/Ref", 423, nullptr));
  EXPECT_EQ(FailureOf([&] { (*ref).counted.Value(); }),
            Throws<CNullReferenceException>("mirel/base/Ref", 437, nullptr));
}

TEST_F(RefTest, HoldsTheBlockFirstAndTheObjectBesideIt) {
  auto* const target = new Target(1);
  CRef<Target> ref(target);
  EXPECT_EQ(FieldsOf<Fields>(ref).object, target);
  EXPECT_TRUE(FieldsOf<Fields>(ref).block->IsOwning());
  EXPECT_EQ(CountOf(ref), 1u);
  EXPECT_EQ(ref->counted.Value(), 1);
  EXPECT_EQ(&*ref, target);
  EXPECT_TRUE(ref != CNull());
  EXPECT_EQ(allocations.Made(), 2) << "the object and one counter block";
}

TEST_F(RefTest, CopiesShareOneBlockAndTheLastOneDeletesTheObject) {
  {
    CRef<Target> first(new Target(1));
    {
      CRef<Target> second(first);
      EXPECT_EQ(FieldsOf<Fields>(second).block, FieldsOf<Fields>(first).block);
      EXPECT_EQ(FieldsOf<Fields>(second).object, FieldsOf<Fields>(first).object);
      EXPECT_EQ(CountOf(first), 2u);
    }
    EXPECT_EQ(CountOf(first), 1u);
    EXPECT_THAT(Counted::tally.destroyed, IsEmpty());
  }
  EXPECT_THAT(Counted::tally.destroyed, ElementsAre(1));
}

TEST_F(RefTest, CopyOfAnEmptyReferenceIsEmpty) {
  CRef<Target> empty;
  CRef<Target> copy(empty);
  EXPECT_TRUE(copy == CNull());
}

TEST_F(RefTest, AssigningAReferenceToItselfChangesNoCount) {
  CRef<Target> ref(new Target(1));
  CRef<Target> copy(ref);
  const CRef<Target>& same = ref;
  EXPECT_EQ(&(ref = same), &ref);
  EXPECT_EQ(CountOf(ref), 2u);
  copy = CRef<Target>();
  ref = same;
  EXPECT_EQ(CountOf(ref), 1u);
  EXPECT_THAT(Counted::tally.destroyed, IsEmpty());
}

TEST_F(RefTest, AssigningAReferenceToTheSameObjectChangesNoCount) {
  CRef<Target> ref(new Target(1));
  CRef<Target> copy(ref);
  ref = copy;
  EXPECT_EQ(CountOf(ref), 2u);
  EXPECT_THAT(Counted::tally.destroyed, IsEmpty());
}

TEST_F(RefTest, AssignmentDropsTheOldObjectAndSharesTheNew) {
  CRef<Target> ref(new Target(1));
  CRef<Target> other(new Target(2));
  EXPECT_EQ(&(ref = other), &ref);
  EXPECT_THAT(Counted::tally.destroyed, ElementsAre(1));
  EXPECT_EQ(ref->counted.Value(), 2);
  EXPECT_EQ(CountOf(other), 2u);
}

TEST_F(RefTest, AssignmentOfAnEmptyReferenceDropsTheObject) {
  CRef<Target> ref(new Target(1));
  ref = CRef<Target>();
  EXPECT_THAT(Counted::tally.destroyed, ElementsAre(1));
  EXPECT_EQ(FieldsOf<Fields>(ref).block, nullptr);
  EXPECT_TRUE(ref == CNull());
}

// Reads, in its destructor, the reference that is being assigned.
struct Witness : CBase {
  explicit Witness(const void*& seen) : m_seen(seen) {}
  ~Witness() {
    if (watched != nullptr) m_seen = FieldsOf<RefFields>(*watched).object;
  }
  struct RefFields {
    void* block;
    void* object;
  };
  const CRef<Witness>* watched = nullptr;

 private:
  const void*& m_seen;
};

TEST_F(RefTest, AnObjectThatIsDroppedStillSeesItselfInTheReference) {
  const void* seen = nullptr;
  const CRef<Witness> other(new Witness(seen));
  const auto dropBy = [&](auto assign) {
    Witness* const first = new Witness(seen);
    CRef<Witness> ref(first);
    first->watched = &ref;
    assign(ref);
    EXPECT_EQ(seen, first);
    EXPECT_NE(FieldsOf<Witness::RefFields>(ref).object, first);
  };
  dropBy([&](CRef<Witness>& ref) { ref = other; });
  dropBy([&](CRef<Witness>& ref) { ref = new Witness(seen); });
}

TEST_F(RefTest, ReseatingDropsTheOldObjectAndOwnsTheNew) {
  CRef<Target> ref(new Target(1));
  CRef<Target> copy(ref);
  EXPECT_EQ(&(ref = new Target(2)), &ref);
  EXPECT_THAT(Counted::tally.destroyed, IsEmpty());
  EXPECT_EQ(CountOf(copy), 1u);
  copy = new Target(3);
  EXPECT_THAT(Counted::tally.destroyed, ElementsAre(1));
  EXPECT_EQ(ref->counted.Value(), 2);
  EXPECT_EQ(CountOf(ref), 1u);
}

TEST_F(RefTest, ReseatingWithNullEmptiesAndAllocatesNothing) {
  CRef<Target> ref(new Target(1));
  const int made = allocations.Made();
  ref = static_cast<Target*>(nullptr);
  EXPECT_EQ(allocations.Made(), made);
  EXPECT_THAT(Counted::tally.destroyed, ElementsAre(1));
  EXPECT_EQ(FieldsOf<Fields>(ref).block, nullptr);
  EXPECT_EQ(FieldsOf<Fields>(ref).object, nullptr);
}

TEST_F(RefTest, ConstructionWithoutMemoryForTheBlockDeletesTheObject) {
  auto* const target = new Target(1);
  allocations.Fail(1);
  EXPECT_EQ(FailureOf([&] { CRef<Target> ref(target); }), Throws<CMemoryException>("mirel/base/Ref", 185, nullptr));
  EXPECT_THAT(Counted::tally.destroyed, ElementsAre(1));
  EXPECT_EQ(allocations.Live(), 0u);
}

TEST_F(RefTest, ReseatingWithoutMemoryForTheBlockDeletesTheNewObjectAndKeepsTheOld) {
  CRef<Target> ref(new Target(1));
  auto* const target = new Target(2);
  allocations.Fail(1);
  EXPECT_EQ(FailureOf([&] { ref = target; }), Throws<CMemoryException>("mirel/base/Ref", 279, nullptr));
  EXPECT_THAT(Counted::tally.destroyed, ElementsAre(2));
  EXPECT_EQ(ref->counted.Value(), 1);
  EXPECT_EQ(CountOf(ref), 1u);
}

struct PolymorphicBase : CBase {
  virtual ~PolymorphicBase() noexcept(false) {}
};
struct PolymorphicTarget : PolymorphicBase {
  Counted counted{7};
};

TEST_F(RefTest, DeletesThroughTheVirtualDestructorWhereThereIsOne) {
  { CRef<PolymorphicBase> ref(new PolymorphicTarget); }
  EXPECT_THAT(Counted::tally.destroyed, ElementsAre(7));
}

// A class of a host, with its own allocator.
struct HostsOwn {
  static inline int live = 0;
  static void* operator new(std::size_t size) {
    ++live;
    return ::operator new(size);
  }
  static void operator delete(void* block) {
    --live;
    ::operator delete(block);
  }
  virtual ~HostsOwn() = default;
  Counted counted{8};
};

TEST_F(RefTest, AVirtualDestructorBringsItsOwnDeleteAlong) {
  {
    CRef<HostsOwn> ref(new HostsOwn);
    EXPECT_EQ(allocations.Live(), 1u) << "the block";
    ref = new HostsOwn;
    EXPECT_EQ(HostsOwn::live, 1);
    allocations.Fail(1);
    EXPECT_THROW(ref = new HostsOwn, CMemoryException);
    EXPECT_EQ(HostsOwn::live, 1);
  }
  EXPECT_EQ(HostsOwn::live, 0);
}

// A class with virtual functions but no virtual destructor, as CJavaVmProcess is.
struct Plain : CBase {
  virtual int Value() const { return counted.Value(); }
  Counted counted{9};
};

TEST_F(RefTest, AnObjectWithoutAVirtualDestructorIsDestroyedAsWhatItIs) {
  {
    CRef<Plain> ref(new Plain);
    EXPECT_EQ(ref->Value(), 9);
  }
  EXPECT_THAT(Counted::tally.destroyed, ElementsAre(9));
  EXPECT_EQ(allocations.Live(), 0u);
}

TEST_F(RefTest, ADestructorThatThrowsCostsNoMemory) {
  Counted::tally.throwWhenDestroyed = {1};
  CRef<Target> ref(new Target(1));
  EXPECT_THROW(ref = new Target(2), ElementFailure);
  EXPECT_EQ(ref->counted.Value(), 2) << "the new object is held nevertheless";
  EXPECT_EQ(allocations.Live(), 2u);
  Counted::tally.throwWhenDestroyed = {2};
  EXPECT_THROW(
      {
        CRef<Target> copy(ref);
        ref = CRef<Target>();
      },
      ElementFailure);
  EXPECT_EQ(allocations.Live(), 0u);
}

TEST_F(RefTest, ACountFoundAtZeroIsNotCountedBelow) {
  {
    CRef<Target> ref(new Target(1));
    EXPECT_TRUE(FieldsOf<Fields>(ref).block->RemoveReference());
  }
  EXPECT_THAT(Counted::tally.destroyed, ElementsAre(1));
}

using CounterBlock = CRefCountedPtr<Target>;

struct BlockFields {
  Target* object;
  unsigned char owning;
  unsigned int count;
};

TEST_F(RefTest, ABlockThatDoesNotOwnLeavesTheObject) {
  CRef<Target> ref(new Target(2));
  Target* const owned = &*ref;
  CounterBlock* const block = FieldsOf<Fields>(ref).block;
  *block = CounterBlock(owned, false);
  ref = CRef<Target>();
  EXPECT_THAT(Counted::tally.destroyed, IsEmpty());
  delete owned;
}

TEST_F(RefTest, BlockHoldsTheObjectTheFlagAndTheCount) {
  Target target(1);
  CounterBlock block(&target, true);
  block.AddReference();
  const auto fields = FieldsOf<BlockFields>(block);
  EXPECT_EQ(fields.object, &target);
  EXPECT_EQ(fields.owning, 1);
  EXPECT_EQ(fields.count, 2u);
  EXPECT_EQ(FieldsOf<BlockFields>(CounterBlock(&target, false)).owning, 0);
}

TEST_F(RefTest, BlockCountsDownToZeroAndStaysThere) {
  Target target(1);
  CounterBlock block(&target, false);
  block.AddReference();
  EXPECT_FALSE(block.RemoveReference());
  EXPECT_TRUE(block.RemoveReference());
  EXPECT_TRUE(block.RemoveReference());
  EXPECT_EQ(block.GetCount(), 0u);
}

TEST_F(RefTest, BlockRefusesNull) {
  EXPECT_EQ(FailureOf([] { CounterBlock(nullptr, true); }),
            Throws<mirel::base::CIllegalArgumentException>("mirel/base/RefCountedPtr", 98, "Invalid pointer."));
}

}  // namespace
}  // namespace tests
