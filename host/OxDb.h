// Database enumerations.
#pragma once

namespace OxDb {

enum OpenMode { kNotOpen = -1, kForRead = 0, kForWrite = 1, kForNotify = 2 };

// Lineweights in hundredths of a millimetre, and the three special values.
enum LineWeight : int {
    kLnWt000 = 0,
    kLnWt005 = 5,
    kLnWt009 = 9,
    kLnWt013 = 13,
    kLnWt015 = 15,
    kLnWt018 = 18,
    kLnWt020 = 20,
    kLnWt025 = 25,
    kLnWt030 = 30,
    kLnWt035 = 35,
    kLnWt040 = 40,
    kLnWt050 = 50,
    kLnWt053 = 53,
    kLnWt060 = 60,
    kLnWt070 = 70,
    kLnWt080 = 80,
    kLnWt090 = 90,
    kLnWt100 = 100,
    kLnWt106 = 106,
    kLnWt120 = 120,
    kLnWt140 = 140,
    kLnWt158 = 158,
    kLnWt200 = 200,
    kLnWt211 = 211,
    kLnWtByLayer = -1,
    kLnWtByBlock = -2,
    kLnWtByLwDefault = -3,
};

// How an entity's plot style is given.
enum PlotStyleNameType { kPlotStyleNameByLayer = 0, kPlotStyleNameByBlock = 1, kPlotStyleNameById = 2, kPlotStyleNameIsDictDefault = 3 };

} // namespace OxDb
