// A layer's fields in its JSON object: reading them, and writing back those that have changed.

#pragma once

#include "model/Project.h"

namespace headless::model {

// Reads the fields of one layer object. Both throw ProjectError with the place below `path`.
void readLayer(const Json& json, const std::string& path, LayerData& layer, std::optional<int>& parent);
MaskList readMasks(const Json& json, const std::string& path);

// Whether `json` says of the masks what they say.
bool sameMasks(const Json& json, const MaskList& masks);

// Sets in `json` whatever `layer` (with its masks and its parent's index) says otherwise than `shown`, whose
// fields are `asRead`: the same object with the slots' values in their places. Members that did not change keep
// their form. Throws ProjectError where one that takes its value from a slot would have to.
void patchLayer(Json& json, const Json& shown, const Layer& layer, const LayerData& asRead,
                std::optional<int> parentAsRead);

// A whole number is written without a fraction. Throws ProjectError where it could not be read again.
Json jsonNumber(double value);

// The nearest whole number; nothing where layers cannot be counted so far.
std::optional<int> wholeIndex(double number);

// The number at json[key], or `otherwise` where there is none. Throws ProjectError naming path.key when
// something else stands there.
double numberAt(const Json& json, const char* key, double otherwise, const std::string& path);
// The same, for what must be there.
double requiredNumber(const Json& json, const char* key, const std::string& path);
bool truthAt(const Json& json, const char* key);  // true, or a number other than 0
std::string textAt(const Json& json, const char* key);
// Of assets: a text, or a number as the text of that number.
std::string idAt(const Json& json, const char* key);

}  // namespace headless::model
