// Status codes of the host's input functions and command handlers, result
// buffer type codes, and the database error status.
#pragma once

// Input and command statuses.
enum : int {
    STATUS_NORMAL = 5100,   // done
    STATUS_NONE = 5000,     // empty input (Enter)
    STATUS_ERROR = -5001,   // could not work
    STATUS_CANCEL = -5002,  // cancelled (Escape)
    STATUS_REJECT = -5003,  // input refused
    STATUS_FAIL = -5004,    // failure
    STATUS_KEYWORD = -5005, // a keyword where a value was asked for
};

// Result buffer value types.
enum : short {
    RTNONE = 5000,
    RTREAL = 5001,
    RTPOINT = 5002,
    RTSHORT = 5003,
    RTANG = 5004,
    RTSTR = 5005,
    RTENAME = 5006,
    RTPICKS = 5007,
    RTORINT = 5008,
    RT3DPOINT = 5009,
    RTLONG = 5010,
    RTVOID = 5014,
    RTLB = 5016,
    RTLE = 5017,
    RTDXF0 = 5020, // entity type name, used in selection filters
};

namespace Ox {

// Database and utility error status; eOk is 0 so that "0 when found" holds.
enum ErrorStatus : int {
    eOk = 0,
    eNotImplementedYet,
    eNullObjectId,
    eNullObjectPointer,
    eInvalidInput,
    eKeyNotFound,
    eDuplicateKey,
    eDuplicateRecordName,
    eWasErased,
    eWasOpenForRead,
    eWasOpenForWrite,
    eWasNotOpenForWrite,
    eNotOpenForWrite,
    eHadMultipleReaders,
    eOnLockedLayer,
    eNotThatKindOfClass,
    eWrongDatabase,
    eNoDatabase,
    eAlreadyInDb,
    eInvalidSymbolTableName,
    eBadLayerName,
    eCannotBeErasedByCaller,
    eObjectToBeDeleted,
    eLayerFrozen,
    eInvalidLayer,
    eFileNotFound,
    eFileAccessErr,
    eInvalidFileFormat,
    eOutOfRange,
    eNotApplicable,
    eWasNotErased,
    eSelfReference, // a block would insert itself, directly or through other blocks
};

} // namespace Ox
