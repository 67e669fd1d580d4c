#pragma once

/// A configuration object of the host. Incomplete on purpose: the plug-in never reads the pointers
/// that PluginBase::EventProcessorEx and PluginBase::CommandProcessorEx receive.
class ConfigBase;
