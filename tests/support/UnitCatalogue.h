// A small unit catalogue for tests. A process has one catalogue and never another: each test needs a process.
#pragma once

#include <TuvoUtil/Units.h>

#include "support/TestFiles.h"
#include "support/TestInChild.h"

#include <string>

// The system 4 repeats the units of 1, the system 5 has a unit that does not exist, the last data type repeats the id of
// another one.
inline constexpr char TestCatalogue[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<UNITS>
  <BASE_TYPE TYPE="LENGTH">
    <BASE_UNIT NAME="Metre" ABBR="m" ID="1" CONV_VAL="1"/>
    <BASE_UNIT NAME="Millimetre" ABBR="MM" ID="2" CONV_VAL="1000"/>
    <BASE_UNIT NAME="Inch" ABBR="in" ID="3" CONV_VAL="39.37007874015748"/>
    <BASE_UNIT NAME="Second metre" ABBR="M" ID="2" CONV_VAL="7"/>
  </BASE_TYPE>
  <BASE_TYPE TYPE="MASS">
    <BASE_UNIT NAME="Kilogram" ABBR="kg" ID="11" CONV_VAL="1"/>
    <BASE_UNIT NAME="Tonne" ABBR="ton" ID="12" CONV_VAL="0.001"/>
  </BASE_TYPE>
  <BASE_TYPE TYPE="TIME">
    <BASE_UNIT NAME="Second" ABBR="sec" ID="21" CONV_VAL="1"/>
    <BASE_UNIT NAME="Millisecond" ABBR="millisec" ID="22" CONV_VAL="1000"/>
  </BASE_TYPE>
  <BASE_TYPE TYPE="HEAT">
    <BASE_UNIT NAME="Kelvin" ABBR="kelvin" ID="31" CONV_VAL="1"/>
    <BASE_UNIT NAME="Celsius" ABBR="centigrade" ID="32" CONV_VAL="1" ADD_VAL="-273.15"/>
    <BASE_UNIT NAME="Fahrenheit" ABBR="fahrenheit" ID="33" CONV_VAL="1.8" ADD_VAL="-459.67"/>
  </BASE_TYPE>
  <BASE_TYPE TYPE="CONSTANT">
    <BASE_UNIT NAME="Gravity" ABBR="g" ID="41" CONV_VAL="9.80665"/>
  </BASE_TYPE>
  <UNIT_SYSTEM NAME="none" ID="0" LENGTH_UNIT="-1" MASS_UNIT="-1" TIME_UNIT="-1" HEAT_UNIT="-1"/>
  <UNIT_SYSTEM NAME="SI" DISPLAY_NAME="m kg sec" ID="1" LENGTH_UNIT="1" MASS_UNIT="11" TIME_UNIT="21" HEAT_UNIT="31"/>
  <UNIT_SYSTEM NAME="mmt" DISPLAY_NAME="mm ton sec" ID="2" LENGTH_UNIT="2" MASS_UNIT="12" TIME_UNIT="21" HEAT_UNIT="32"/>
  <UNIT_SYSTEM NAME="inch" ID="3" LENGTH_UNIT="3" MASS_UNIT="11" TIME_UNIT="22" HEAT_UNIT="33"/>
  <UNIT_SYSTEM NAME="again" DISPLAY_NAME="again" ID="4" LENGTH_UNIT="1" MASS_UNIT="11" TIME_UNIT="21" HEAT_UNIT="31"/>
  <UNIT_SYSTEM NAME="part" DISPLAY_NAME="part" ID="5" LENGTH_UNIT="1" MASS_UNIT="99" TIME_UNIT="21" HEAT_UNIT="-1"/>
  <DATA_TYPE NAME="Percent" ID="1" NUM_L="1" NUM_M="0" NUM_T="0" NUM_H="0" MULTIPLIER="100"
             DISPLAY_UNIT_ID_NAME="1:%" ZAMVIEW_NAME="PERCENT"/>
  <DATA_TYPE NAME="Length" ID="2" NUM_L="1" NUM_M="0" NUM_T="0" NUM_H="0" ZAMVIEW_NAME="DIST"/>
  <DATA_TYPE NAME="Area" ID="3" NUM_L="2" NUM_M="0" NUM_T="0" NUM_H="0"/>
  <DATA_TYPE NAME="Force" ID="4" NUM_L="1" NUM_M="1" NUM_T="-2" NUM_H="0" DISPLAY_UNIT_ID_NAME="1:N;2:N;9:?"/>
  <DATA_TYPE NAME="Temperature" ID="5" NUM_L="0" NUM_M="0" NUM_T="0" NUM_H="1" ZAMVIEW_NAME="TEMP"/>
  <DATA_TYPE NAME="Frequency" ID="6" NUM_L="0" NUM_M="0" NUM_T="-1" NUM_H="0"/>
  <DATA_TYPE NAME="Squared heat" ID="7" NUM_L="0" NUM_M="0" NUM_T="0" NUM_H="2"/>
  <DATA_TYPE NAME="Ratio" ID="8" NUM_L="0" NUM_M="0" NUM_T="0" NUM_H="0"/>
  <DATA_TYPE NAME="Root" ID="49" NUM_L="2" NUM_M="0" NUM_T="0" NUM_H="0"/>
  <DATA_TYPE NAME="Conductivity" ID="10" NUM_L="1" NUM_M="1" NUM_T="-3" NUM_H="-1"/>
  <DATA_TYPE NAME="LENGTH" ID="2" NUM_L="3" NUM_M="0" NUM_T="0" NUM_H="0"/>
</UNITS>
)";

// Starts the catalogue of this process with a text as its file.
inline void LoadCatalogue(const std::string& text = TestCatalogue)
{
    const TemporaryFolder folder;
    folder.Write("unit.xml", text);
    std::string directory = folder.NarrowPath();
    directory.pop_back();
    VUnitUtlMain(directory.c_str());
}

// The number of systems.
inline int SystemCount()
{
    return VUnitUtlGetUnitSystems(nullptr);
}

inline std::string UnitString(int dataType, int system)
{
    const _UnitDataStr data = {dataType, system};
    char text[256] = "unwritten";
    VUnitUtlGetUnitString(&data, text);
    return text;
}
