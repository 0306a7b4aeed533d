// Resource text of dialogs: type{ name: value, child: type{...}, ... }.
(function (host) {
    "use strict";

    var WORDS = { "null": null, "true": true, "false": false, "undefined": undefined };

    // Gives {type, entries: [{name, value} or {name, child}]}; a child has that form itself.
    host.parseResource = function (text) {
        var at = 0;

        function fail(what) {
            throw new SyntaxError("resource text: " + what + " at \"" + text.substr(at, 20) + "\"");
        }
        // What `pattern` matches here, after blanks. Patterns begin with ^.
        function match(pattern) {
            at += /^\s*/.exec(text.substr(at))[0].length;
            var found = pattern.exec(text.substr(at));
            if (found) {
                at += found[0].length;
            }
            return found && found[0];
        }
        function expect(pattern, what) {
            var found = match(pattern);
            if (found === null) {
                fail("expected " + what);
            }
            return found;
        }
        function unquoted(literal) {
            return literal.slice(1, -1).replace(/\\(u([0-9a-fA-F]{4})|[^])/g, function (all, escape, code) {
                var known = { n: "\n", r: "\r", t: "\t" };
                return code ? String.fromCharCode(parseInt(code, 16)) : (known[escape] || escape);
            });
        }
        // Reads `one` until `end`, with commas between; a comma before the end is accepted.
        function list(end, one) {
            while (match(end) === null) {
                one();
                if (match(/^,/) === null) {
                    expect(end, "a comma or the end");
                    return;
                }
            }
        }
        function name() {
            var quoted = match(/^("(\\[^]|[^"\\])*"|'(\\[^]|[^'\\])*')/);
            return quoted === null ? expect(/^[A-Za-z_$][\w$]*/, "a name") : unquoted(quoted);
        }
        function value() {
            var quoted = match(/^("(\\[^]|[^"\\])*"|'(\\[^]|[^'\\])*')/);
            if (quoted !== null) {
                return unquoted(quoted);
            }
            var number = match(/^[-+]?(\d+\.?\d*|\.\d+)([eE][-+]?\d+)?/);
            if (number !== null) {
                return Number(number);
            }
            if (match(/^\[/) !== null) {
                var array = [];
                list(/^\]/, function () { array.push(value()); });
                return array;
            }
            if (match(/^\{/) !== null) {
                var object = {};
                list(/^\}/, function () {
                    var key = name();
                    expect(/^:/, "a colon");
                    object[key] = value();
                });
                return object;
            }
            var word = expect(/^[A-Za-z]+/, "a value");
            if (!WORDS.hasOwnProperty(word)) {
                fail("\"" + word + "\" is not a value");
            }
            return WORDS[word];
        }
        function element() {
            var result = { type: expect(/^[A-Za-z]+/, "a type"), entries: [] };
            expect(/^\{/, "{");
            list(/^\}/, function () {
                var entry = { name: name() };
                expect(/^:/, "a colon");
                if (/^\s*[A-Za-z]+\s*\{/.test(text.substr(at))) {
                    entry.child = element();
                } else {
                    entry.value = value();
                }
                result.entries.push(entry);
            });
            return result;
        }

        var result = element();
        if (match(/^$/) === null) {
            fail("unexpected text");
        }
        return result;
    };
})
