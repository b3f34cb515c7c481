#ifndef HOST_EXTEND_H
#define HOST_EXTEND_H

/// Registration of the host's extension classes (PropertyPE, ExtendPE). The application calls
/// odInitialize() first and then odHostExtendInitialize(); modules attach their extensions
/// under these classes, so they must be registered before any module is loaded.

/// Registers PropertyPE and ExtendPE under OdRxObject. Calls nest: only the first registers,
/// and only the matching last odHostExtendUninitialize removes them. Throws
/// OdError(eNotInitializedYet) when odInitialize() has not been called.
void odHostExtendInitialize();
/// Undoes one odHostExtendInitialize(); an unmatched call does nothing.
void odHostExtendUninitialize();

#endif
