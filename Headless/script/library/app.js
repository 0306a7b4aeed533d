// app, its project, items, layers and masks, the preferences, and alert and $.
(function (host, global) {
    "use strict";

    var define = Object.defineProperty;
    var SECURITY_SECTION = "Main Pref Section";
    var SECURITY_KEY = "Pref_SCRIPTING_FILE_NETWORK_SECURITY";

    // A member that scripts can read; setting it is refused unless there is a setter.
    function member(target, name, get, set) {
        define(target, name, {
            get: get,
            set: set || function () { throw new Error("\"" + name + "\" cannot be set by a script"); }
        });
    }

    function hidden(target, name, value) {
        define(target, name, { value: value });
    }

    // A place from 1, or a name among `count` things, as a place from 0.
    function placeOf(key, count, nameAt, what) {
        if (typeof key === "string") {
            for (var i = 0; i < count; i++) {
                if (nameAt(i) === key) {
                    return i;
                }
            }
            throw new Error("no " + what + " is named \"" + key + "\"");
        }
        var place = Number(key);
        if (!(place >= 1 && place <= count) || place % 1 !== 0) {
            throw new Error(what + " " + key + " is out of range: there are " + count);
        }
        return place - 1;
    }

    // Layers

    function Layer(id) {
        hidden(this, "$id", id);
        if (host.layer(id).hasSourceMember) {
            member(this, "mask", function () { return maskGroup(id); });
        }
    }

    function maskGroup(id) {
        function names() {
            return host.layer(id).maskNames;
        }
        function mask(key) {
            var all = names();
            var place = placeOf(key, all.length, function (i) { return all[i]; }, "mask");
            return { name: all[place] };
        }
        member(mask, "numProperties", function () { return names().length; });
        return mask;
    }

    function sized(name) {
        return function () {
            var info = host.layer(this.$id);
            return info.hasSourceMember ? info[name] : undefined;
        };
    }

    member(Layer.prototype, "name", function () { return host.layer(this.$id).name; });
    member(Layer.prototype, "index", function () { return host.layer(this.$id).index + 1; });
    member(Layer.prototype, "width", sized("width"));
    member(Layer.prototype, "height", sized("height"));
    member(Layer.prototype, "source", function () {
        var info = host.layer(this.$id);
        if (!info.hasSourceMember) {
            return undefined;
        }
        return info.source === undefined ? null : itemFor(info.source);
    });
    member(Layer.prototype, "parent", function () {
        var parent = host.layer(this.$id).parent;
        return parent === undefined ? null : layerFor(parent);
    }, function (parent) {
        if (parent !== null && !(parent instanceof Layer)) {
            throw new Error("a layer's parent is a layer or null");
        }
        host.setParent(this.$id, parent === null ? null : parent.$id);
    });

    // Items

    function Item(id) {
        hidden(this, "$id", id);
    }

    member(Item.prototype, "id", function () { return this.$id; });
    member(Item.prototype, "name", function () { return host.item(this.$id).name; });
    member(Item.prototype, "width", function () { return host.item(this.$id).width; });
    member(Item.prototype, "height", function () { return host.item(this.$id).height; });

    function CompItem(id) {
        hidden(this, "$id", id);
    }

    CompItem.prototype = Object.create(Item.prototype);
    member(CompItem.prototype, "numLayers", function () { return host.item(this.$id).layerCount; });
    member(CompItem.prototype, "selectedLayers", function () {
        var ids = host.selectedLayers(this.$id);
        for (var i = 0; i < ids.length; i++) {
            ids[i] = layerFor(ids[i]);
        }
        return ids;
    });
    hidden(CompItem.prototype, "layer", function (key, offset) {
        var id = this.$id;
        var wanted = key instanceof Layer ? key.index + Number(offset) : key;
        var place = placeOf(wanted, this.numLayers, function (i) {
            return host.layer(host.layerAt(id, i)).name;
        }, "layer");
        return layerFor(host.layerAt(id, place));
    });

    // One object for each item and layer, so that two ways to it compare equal.
    var items = {};
    var layers = {};

    function itemFor(id) {
        if (!items[id]) {
            items[id] = host.item(id).isComp ? new CompItem(id) : new Item(id);
        }
        return items[id];
    }

    function layerFor(id) {
        if (!layers[id]) {
            layers[id] = new Layer(id);
        }
        return layers[id];
    }

    // The project

    function itemAt(key) {
        var count = host.itemCount();
        return itemFor(host.itemIdAt(placeOf(Number(key), count, null, "item")));
    }

    var collection = {};
    member(collection, "length", host.itemCount);
    var itemCollection = new Proxy(collection, {
        get: function (target, name) {
            return typeof name !== "symbol" && /^\d+$/.test(name) ? itemAt(name) : target[name];
        }
    });

    var project = {};
    hidden(project, "items", itemCollection);
    hidden(project, "item", itemAt);
    member(project, "numItems", host.itemCount);
    member(project, "activeItem", function () {
        var id = host.activeItem();
        return id === null ? null : itemFor(id);
    });

    // Preferences. There is one file: a file type given after the other arguments changes nothing.

    var preferences = {};

    function reader(name) {
        preferences[name] = function (section, key) {
            var value = host[name](String(section), String(key));
            if (value === undefined) {
                throw new Error("the preference \"" + key + "\" of section \"" + section + "\" does not exist");
            }
            return value;
        };
    }

    function changeable(section, key) {
        if (section === SECURITY_SECTION && key === SECURITY_KEY) {
            throw new Error("a script cannot change the preference \"" + key + "\"");
        }
    }

    function writer(name, convert) {
        preferences[name] = function (section, key, value) {
            section = String(section);
            key = String(key);
            changeable(section, key);
            host[name](section, key, convert(value));
        };
    }

    function finite(value) {
        var number = Number(value);
        if (!isFinite(number)) {
            throw new Error("a preference of this kind takes a number, not \"" + value + "\"");
        }
        return number;
    }

    reader("getPrefAsBool");
    reader("getPrefAsLong");
    reader("getPrefAsFloat");
    reader("getPrefAsString");
    writer("savePrefAsBool", Boolean);
    writer("savePrefAsLong", finite);
    writer("savePrefAsFloat", finite);
    writer("savePrefAsString", String);
    preferences.havePref = function (section, key) {
        return host.havePref(String(section), String(key));
    };
    preferences.deletePref = function (section, key) {
        section = String(section);
        key = String(key);
        changeable(section, key);
        host.deletePref(section, key);
    };
    preferences.saveToDisk = function () { host.savePreferences(); };
    preferences.reload = function () { host.reloadPreferences(); };

    host.filesAllowed = function () {
        return host.getPrefAsLong(SECURITY_SECTION, SECURITY_KEY) === 1;
    };

    // What scripts see. app takes members of theirs, such as the panel's update function.

    global.app = {};
    hidden(global.app, "project", project);
    hidden(global.app, "preferences", preferences);
    global.alert = function (message, title, errorIcon) {
        host.alert(String(message), title === undefined ? "" : String(title), Boolean(errorIcon));
    };
    global.$ = { sleep: function () {} };
})
