#pragma once

/// A configuration object of the host. The plug-in only lets it pass through
/// PluginBase::EventProcessorEx and PluginBase::CommandProcessorEx, so it stays incomplete here.
class ConfigBase;
