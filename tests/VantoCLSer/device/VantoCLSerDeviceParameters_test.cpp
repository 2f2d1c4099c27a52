/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The description that the transport layer's parameters of a device are made of, as a text
 */

#include <gtest/gtest.h>

#include <string>

#include "../../support/Flattened.h"

extern const char kTransportLayerDescription[];

namespace {

constexpr char kExpected[] =
    R"(<?xml version="1.0" encoding="UTF-8"?>)"
    R"(<RegisterDescription xmlns="http://www.genicam.org/GenApi/Version_1_0")"
    R"( xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance")"
    R"( xsi:schemaLocation="http://www.genicam.org/GenApi/Version_1_0)"
    R"( C:/Projects/genicam/xml/GenApi/GenApiSchema_Version_1_0.xsd")"
    R"( SchemaSubMinorVersion="0" VendorName="Marlow" SchemaMinorVersion="0" SubMinorVersion="0")"
    R"( VersionGuid="4D7A2C19-5E83-4B06-9F1D-2A6C8E0B7D53" SchemaMajorVersion="1" MajorVersion="0" MinorVersion="0")"
    R"( StandardNameSpace="None" ModelName="CLSerTransportLayer" ProductGuid="0B6E91F4-7C2A-4D38-A5E7-93F1C6B2D840")"
    R"( ToolTip="Interface to the CLSer camera transport layer parameters">)"
    R"(<Category Name="Root"><ToolTip>CLSer stream parameters</ToolTip>)"
    R"(<Description>Change following values to adopt driver ressources.</Description>)"
    R"(<pFeature>SerialPort</pFeature></Category>)"
    R"(<Category Name="SerialPort"><ToolTip>Parameter of the serial port.</ToolTip>)"
    R"(<pFeature>AutoCloseTimeout</pFeature></Category>)"
    R"(<Integer Name="AutoCloseTimeout"><ToolTip>Auto Close Timeout</ToolTip>)"
    R"(<Description>Automatically close the serial port after this amount of milliseconds of inactivity. A value of 0 )"
    R"(will keep the port open.</Description><DisplayName>Auto Close Timeout</DisplayName>)"
    R"(<Value>0</Value><Min>0</Min><Max>86400</Max><Representation>Linear</Representation></Integer>)"
    R"(<Integer Name="BadFirmware"><Description>.</Description><DisplayName>Bad Firmware</DisplayName>)"
    R"(<Value>0</Value><Representation>Linear</Representation></Integer>)"
    R"(</RegisterDescription>)";

TEST(TransportLayerDescription, HasTheseElementsInThisOrderAndNothingElse) {
    EXPECT_EQ(test_support::Flattened(kTransportLayerDescription), kExpected);
}

}  // namespace
