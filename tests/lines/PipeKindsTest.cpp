// The pipe kinds the module exports for a host to register: a kind registers as the pipe does,
// under it, and differs from it only in identity.

#include "lines/LineClasses.h"

#include <gtest/gtest.h>

namespace {

TEST(PipeKinds, RegisterUnderThePipeWithItsVersionAndProxyFlags) {
  DecorationDuct::rxInit();
  const OdRxClass* kind = DecorationDuct::desc();
  const OdRxClass* pipe = DecorationPipe::desc();
  EXPECT_EQ(kind->myParent(), pipe);
  EXPECT_EQ(kind->dxfName(), OdString(u"DECORATIONDUCT"));
  int kindRelease = 0, pipeRelease = 0;
  EXPECT_EQ(kind->getClassVersion(&kindRelease), pipe->getClassVersion(&pipeRelease));
  EXPECT_EQ(kindRelease, pipeRelease);
  EXPECT_EQ(kind->proxyFlags(), pipe->proxyFlags());
  EXPECT_TRUE(DecorationDuct::createObject()->isKindOf(pipe));
  DecorationDuct::rxUninit();
}

} // namespace
