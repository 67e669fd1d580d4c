#pragma once

/// A configuration object of the host, a parameter of PluginBase::EventProcessorEx and
/// PluginBase::CommandProcessorEx. Incomplete on purpose: the plug-in never dereferences it.
class ConfigBase;
