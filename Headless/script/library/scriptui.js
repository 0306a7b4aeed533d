// Dialogs: windows, their controls, and how one is shown until it is closed. Nothing is laid out: sizes and places
// are kept as scripts set them.
(function (host, global) {
    "use strict";

    // Kept for later: scripts run without what is newer than the third edition of the language.
    var define = Object.defineProperty;
    var isArray = Array.isArray;
    var call = Function.prototype.call;
    var each = call.bind(Array.prototype.forEach);
    var map = call.bind(Array.prototype.map);
    var filter = call.bind(Array.prototype.filter);
    var indexOf = call.bind(Array.prototype.indexOf);

    var CONTAINERS = { dialog: 1, palette: 1, window: 1, group: 1, panel: 1 };
    var LISTS = { dropdownlist: 1, listbox: 1 };
    var TOGGLES = { checkbox: 1, radiobutton: 1 };
    var TYPES = { statictext: 1, edittext: 1, button: 1 };
    var RESULT_OK = 1;
    var RESULT_CANCEL = 2;
    // A dialog that refuses to close is asked this often before it is closed all the same.
    var REFUSALS = 100;

    function member(target, name, get, set) {
        define(target, name, { get: get, set: set, enumerable: true });
    }

    function state(element, values) {
        define(element, "$state", { value: values });
    }

    // Sizes: [width, height] or an object, read as an object. An empty text, like -1, leaves a side to the layout.
    function Dimension(value) {
        this.width = isArray(value) ? value[0] : value.width;
        this.height = isArray(value) ? value[1] : value.height;
    }

    function Bounds(value) {
        this.left = isArray(value) ? value[0] : value.left;
        this.top = isArray(value) ? value[1] : value.top;
        this.right = isArray(value) ? value[2] : value.right;
        this.bottom = isArray(value) ? value[3] : value.bottom;
    }
    member(Bounds.prototype, "width", function () { return this.right - this.left; });
    member(Bounds.prototype, "height", function () { return this.bottom - this.top; });

    // Elements

    function Element(type, parent) {
        state(this, { type: type, text: "", value: false, sizes: {}, selection: [] });
        this.parent = parent;
        this.window = parent ? parent.window : this;
        this.enabled = true;
        this.visible = true;
        this.properties = {};
        if (CONTAINERS[type]) {
            this.children = [];
            this.orientation = type === "group" ? "row" : "column";
        }
        if (LISTS[type]) {
            this.items = [];
        }
    }

    function fire(element, name) {
        if (typeof element[name] === "function") {
            return element[name]();
        }
    }

    member(Element.prototype, "type", function () { return this.$state.type; });
    member(Element.prototype, "text", function () { return this.$state.text; }, function (text) {
        var before = this.$state.text;
        this.$state.text = String(text);
        if (this.type === "edittext" && this.$state.text !== before) {
            fire(this, "onChange");
        }
    });

    each(["preferredSize", "minimumSize", "maximumSize", "size"], function (name) {
        member(Element.prototype, name, function () {
            var sizes = this.$state.sizes;
            sizes[name] = sizes[name] || new Dimension([-1, -1]);
            return sizes[name];
        }, function (value) {
            this.$state.sizes[name] = value ? new Dimension(value) : undefined;
        });
    });
    member(Element.prototype, "bounds", function () { return this.$state.sizes.bounds; }, function (value) {
        this.$state.sizes.bounds = value ? new Bounds(value) : undefined;
    });

    // Check boxes and radio buttons; on any other element `value` is a member like another.
    member(Element.prototype, "value", function () {
        return TOGGLES[this.type] ? this.$state.value : this.$state.other;
    }, function (value) {
        if (!TOGGLES[this.type]) {
            this.$state.other = value;
            return;
        }
        this.$state.value = Boolean(value);
        if (this.type === "radiobutton" && value) {
            var element = this;
            each(this.parent.children, function (other) {
                if (other !== element && other.type === "radiobutton") {
                    other.$state.value = false;
                }
            });
        }
    });

    // Lists. The state holds the indices of what is selected.

    function ListItem(list, text) {
        state(this, { list: list });
        this.text = String(text);
    }
    member(ListItem.prototype, "type", function () { return "item"; });
    member(ListItem.prototype, "parent", function () { return this.$state.list; });
    member(ListItem.prototype, "index", function () { return indexOf(this.$state.list.items, this); });
    member(ListItem.prototype, "selected", function () {
        return indexOf(this.$state.list.$state.selection, this.index) >= 0;
    }, function (selected) {
        var list = this.$state.list;
        var index = this.index;
        var others = filter(list.$state.selection, function (other) { return other !== index; });
        if (selected) {
            setSelection(list, isMultiple(list) ? others.concat(index) : [index]);
        } else {
            setSelection(list, others);
        }
    });

    function isMultiple(list) {
        return list.type === "listbox" && Boolean(list.properties.multiselect);
    }

    function setSelection(list, indices) {
        indices.sort(function (a, b) { return a - b; });
        if (String(indices) !== String(list.$state.selection)) {
            list.$state.selection = indices;
            fire(list, "onChange");
        }
    }

    member(Element.prototype, "selection", function () {
        if (!LISTS[this.type]) {
            return this.$state.otherSelection;
        }
        var items = this.items;
        var selected = map(this.$state.selection, function (index) { return items[index]; });
        if (isMultiple(this)) {
            return selected.length ? selected : null;
        }
        return selected.length ? selected[0] : null;
    }, function (value) {
        if (!LISTS[this.type]) {
            this.$state.otherSelection = value;
            return;
        }
        if (value === null) {
            setSelection(this, []);
            return;
        }
        var items = this.items;
        var indices = map(isArray(value) ? value : [value], function (one) {
            return one instanceof ListItem ? indexOf(items, one) : Number(one);
        });
        indices = filter(indices, function (index, place) {
            return items[index] !== undefined && indexOf(indices, index) === place;
        });
        if (indices.length) {
            setSelection(this, isMultiple(this) ? indices : indices.slice(0, 1));
        }
    });

    // Creation

    function create(parent, type, bounds, content, properties) {
        var known = String(type).toLowerCase();
        if (!TYPES[known] && !TOGGLES[known] && !LISTS[known] && !(parent && (known === "group" || known === "panel"))) {
            throw new Error("no control is of the type \"" + type + "\"");
        }
        var element = new Element(known, parent);
        element.properties = properties || {};
        if (bounds) {
            element.bounds = bounds;
        }
        if (LISTS[known]) {
            var texts = isArray(content) ? content : element.properties.items || [];
            element.items = map(texts, function (text) { return new ListItem(element, text); });
        } else if (content !== undefined) {
            element.text = content;
        }
        parent.children.push(element);
        return element;
    }

    // Creation properties come first: they decide what the other entries mean.
    function creationProperties(resource) {
        var found = {};
        each(resource.entries, function (entry) {
            if (entry.name === "properties") {
                found = entry.value;
            }
        });
        return found;
    }

    function applyEntries(element, resource) {
        each(resource.entries, function (entry) {
            if (entry.child) {
                element[entry.name] = addResource(element, entry.child);
            } else if (entry.name !== "properties") {
                element[entry.name] = entry.value;
            }
        });
        return element;
    }

    function addResource(parent, resource) {
        var element = create(parent, resource.type, undefined, undefined, creationProperties(resource));
        return applyEntries(element, resource);
    }

    Element.prototype.add = function (type, bounds, content, properties) {
        if (LISTS[this.type]) {
            var item = new ListItem(this, bounds);
            this.items.push(item);
            return item;
        }
        if (!CONTAINERS[this.type]) {
            throw new Error("a " + this.type + " holds no other elements");
        }
        if (String(type).indexOf("{") >= 0) {
            return addResource(this, host.parseResource(String(type)));
        }
        return create(this, type, bounds, content, properties);
    };

    // Acting on controls

    function click(element) {
        if (TOGGLES[element.type]) {
            element.value = element.type === "radiobutton" || !element.value;
        }
        if (typeof element.onClick === "function") {
            element.onClick();
        } else if (element.type === "button" && element === element.window.defaultElement) {
            element.window.close(RESULT_OK);
        } else if (element.type === "button" && element === element.window.cancelElement) {
            element.window.close(RESULT_CANCEL);
        }
    }

    Element.prototype.notify = function (event) {
        if (event !== undefined) {
            fire(this, event);
        } else if (LISTS[this.type] || this.type === "edittext") {
            fire(this, "onChange");
        } else {
            click(this);
        }
    };

    // Windows

    function Window(type, title, bounds, properties) {
        var resource = String(type).indexOf("{") >= 0 ? host.parseResource(String(type)) : null;
        var kind = String(resource ? resource.type : type).toLowerCase();
        if (kind !== "dialog" && kind !== "palette" && kind !== "window") {
            throw new Error("no window is of the type \"" + kind + "\"");
        }
        Element.call(this, kind, null);
        this.$state.isOpen = false;
        this.$state.named = {};
        if (resource) {
            this.properties = creationProperties(resource);
            applyEntries(this, resource);
            return;
        }
        this.properties = properties || {};
        this.text = title === undefined ? "" : title;
        if (bounds) {
            this.bounds = bounds;
        }
    }

    Window.prototype = Object.create(Element.prototype);
    define(Window.prototype, "constructor", { value: Window });

    function everyElement(container, visit, depth) {
        each(container.children, function (element) {
            visit(element, depth);
            if (element.children) {
                everyElement(element, visit, depth + 1);
            }
        });
    }

    // The button that a script has named as such, else the one whose name or text is the word.
    function roleMember(name, word) {
        member(Window.prototype, name, function () {
            var chosen = this.$state.named[name];
            everyElement(this, function (element) {
                var fits = String(element.properties.name).toLowerCase() === word ||
                    element.text.toLowerCase() === word;
                if (chosen === undefined && element.type === "button" && fits) {
                    chosen = element;
                }
            }, 0);
            return chosen === undefined ? null : chosen;
        }, function (element) {
            this.$state.named[name] = element;
        });
    }
    roleMember("defaultElement", "ok");
    roleMember("cancelElement", "cancel");

    // Closes unless onClose says false; what else it returns means nothing.
    Window.prototype.close = function (result) {
        var own = this.$state;
        if (!own.isOpen || own.isClosing) {
            return;
        }
        own.isClosing = true;
        try {
            own.isOpen = fire(this, "onClose") === false;
        } finally {
            own.isClosing = false;
        }
        if (!own.isOpen) {
            own.result = result === undefined ? 0 : result;
        }
    };

    Window.prototype.hide = function () { this.close(0); };

    function describe(window, elements) {
        var controls = [];
        function isOn(element, name) {
            return Boolean(element[name]) && (element === window || isOn(element.parent, name));
        }
        everyElement(window, function (element, depth) {
            var isList = Boolean(LISTS[element.type]);
            controls.push({
                id: elements.push(element) - 1,
                type: element.type,
                depth: depth,
                text: element.text,
                checked: Boolean(TOGGLES[element.type] && element.value),
                items: isList ? map(element.items, function (item) { return String(item.text); }) : [],
                selection: isList && element.$state.selection.length ? element.$state.selection[0] : -1,
                enabled: isOn(element, "enabled"),
                visible: isOn(element, "visible")
            });
        }, 0);
        return { showing: window.$state.showing, title: window.text, controls: controls };
    }

    function perform(window, action, elements) {
        var element = elements[action.control];
        if (action.kind === "press") {
            click(element);
        } else if (action.kind === "setText") {
            element.text = action.text;
        } else if (action.kind === "select") {
            element.selection = action.selection;
        } else if (action.kind === "enter") {
            if (window.defaultElement) {
                click(window.defaultElement);
            }
        } else if (action.kind === "escape" && window.cancelElement) {
            click(window.cancelElement);
        } else {
            window.close(RESULT_CANCEL);
        }
    }

    var shown = 0;

    Window.prototype.show = function () {
        var own = this.$state;
        own.isOpen = true;
        own.showing = ++shown;
        own.result = 0;
        if (this.type !== "dialog") {
            return;
        }
        var refusals = 0;
        try {
            while (own.isOpen) {
                var elements = [];
                var action = host.ask(describe(this, elements));
                perform(this, action, elements);
                refusals = action.kind === "closeBox" ? refusals + 1 : 0;
                if (own.isOpen && refusals >= REFUSALS) {
                    own.isOpen = false;
                    own.result = RESULT_CANCEL;
                }
            }
        } finally {
            own.isOpen = false;
        }
        return own.result;
    };

    global.Window = Window;
})
