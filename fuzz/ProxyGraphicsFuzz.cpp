// Feeds arbitrary bytes to the proxy graphics reader as the metafile of a proxy entity: it is
// replayed into a recorder and its extents command is read. A drawing from any source carries
// such metafiles, so neither may read outside the buffer, trust a size or count it has not
// checked, or loop without consuming input.

#include "DbDatabase.h"
#include "DbProxyEntity.h"
#include "Ge/GeExtents3d.h"
#include "Gi/GiRecorder.h"
#include "RxDictionary.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

bool isFinite(const OdGePoint3d& point) {
  return std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  // A database gives layer and linetype indices something to resolve against.
  static OdDbDatabase* const database = [] {
    odInitialize();
    OdDbDatabasePtr db = OdDbDatabase::createObject();
    OdDbDatabase* kept = db.get();
    kept->addRef(); // kept for the life of the process
    return kept;
  }();

  OdUInt8Array metafile;
  metafile.reserve(static_cast<OdUInt8Array::size_type>(size));
  for (std::size_t i = 0; i < size; ++i)
    metafile.push_back(bytes[i]);

  OdGiRecorder recorder;
  recorder.setDatabase(database);
  const OdResult result = oddbReplayProxyGraphics(metafile, &recorder, database);
  if (result != eOk && result != eInvalidInput)
    std::abort(); // the documented results are these two
  // Matrices the metafile pushed are popped whether or not it was read to the end.
  if (recorder.modelTransformDepth() != 0)
    std::abort();

  // Without a database the same bytes take the paths that skip table lookups.
  OdGiRecorder bare;
  if (oddbReplayProxyGraphics(metafile, &bare) != result || bare.modelTransformDepth() != 0)
    std::abort();

  OdGeExtents3d extents;
  if (oddbProxyGraphicsExtents(metafile, extents)) {
    // A box it accepts is finite with its minimum below its maximum.
    const OdGePoint3d& low = extents.minPoint();
    const OdGePoint3d& high = extents.maxPoint();
    if (!isFinite(low) || !isFinite(high) || low.x > high.x || low.y > high.y || low.z > high.z)
      std::abort();
  }
  return 0;
}
