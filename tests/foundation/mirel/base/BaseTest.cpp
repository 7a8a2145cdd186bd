#include <gtest/gtest.h>
#include <mirel/base/MemoryException.h>
#include <mirel/base/Object.h>

#include <new>

#include "foundation/MemoryFailures.h"
#include "foundation/plugin/Plugin.h"

namespace tests {
namespace {

using namespace mirel::base;

class PlainObject : public CObject {};

TEST(BaseTest, ObjectsLiveInBlocksOfTheRootAllocator) {
  Allocations allocations;
  CBase* const base = new CBase;
  CObject* const object = new PlainObject;
  EXPECT_EQ(allocations.Live(), 2u);
  delete object;
  delete base;
  EXPECT_EQ(allocations.Live(), 0u);
}

TEST(BaseTest, WhatAnotherLibraryMadeCanBeDeletedHere) {
  Allocations allocations;
  CObject* const object = new plugin::CPluginException("file", 1, nullptr);
  EXPECT_EQ(allocations.Live(), 1u);
  delete object;
  EXPECT_EQ(allocations.Live(), 0u);
}

TEST(BaseTest, ExhaustionThrowsMemoryExceptionWithoutAMessageInEveryLibrary) {
  EXPECT_EQ(FailEachAllocationOf(
                "mirel/base/Base", [] { delete new PlainObject; }, [] {}),
            1);
  Allocations allocations;
  allocations.Fail(1);
  EXPECT_TRUE(plugin::CatchesMemoryExceptionOfFoundation());
  EXPECT_FALSE(plugin::CatchesMemoryExceptionOfFoundation());
}

TEST(BaseTest, ConstructionInPlaceTakesNoBlock) {
  Allocations allocations;
  alignas(PlainObject) unsigned char place[sizeof(PlainObject)];
  PlainObject* const object = new (place) PlainObject;
  EXPECT_EQ(static_cast<void*>(object), static_cast<void*>(place));
  EXPECT_EQ(allocations.Made(), 0);
  object->~PlainObject();
}

TEST(BaseTest, AMemoryExceptionIsThrownForThePlaceGiven) {
  EXPECT_EQ(FailureOf([] { CBase::_ThrowMemoryException("mirel/util/Vector", 925); }),
            Throws<CMemoryException>("mirel/util/Vector", 925, nullptr));
}

}  // namespace
}  // namespace tests
