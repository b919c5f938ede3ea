// The page agent's script. It runs in every frame of a page, in a script world of its own: the page's
// scripts cannot see or change what is here, and the prototypes that it uses are untouched.
//
// The file is one function. It is called once for each new document, with the frame's number, a
// function that sends an event to the program, the function of formbody.js and what that one needs.
// What it returns answers the program's requests; it is kept as `velmoraAgent` in the frame's window,
// where the agents of the frames around find it.
(function (frameNumber, tellProgram, parts) {
  "use strict";

  // --- Texts on the wire: joined by line feeds, with "\", line feed and zero escaped -------------

  const kEscapes = { "\\": "\\\\", "\n": "\\n", "\0": "\\0" };
  const kEscaped = { "\\": "\\", n: "\n", 0: "\0" };

  function pack(texts) {
    return texts
      .map((text) => String(text).replace(/[\\\n\0]/g, (c) => kEscapes[c]))
      .join("\n")
      .toWellFormed();
  }

  function unpack(message) {
    return message.split("\n").map((text) => text.replace(/\\(.)/g, (_, c) => kEscaped[c] ?? c));
  }

  function tell(kind, texts) {
    tellProgram(kind, pack(texts));
  }

  // --- What the program knows stays valid until the form's structure changes ---------------------

  // A form's field may be named "action" or "elements" and hide the form's own member; the getters of
  // the prototype cannot be hidden.
  function member(type, name, object) {
    return Object.getOwnPropertyDescriptor(type.prototype, name).get.call(object);
  }

  const kStructure = "input,select,textarea,button,option,optgroup,form,iframe,frame,frameset";
  const kAttributes =
    ["name", "type", "value", "src", "form", "action", "id", "label", "disabled", "checked", "selected"];

  // Numbers begin at a place of their own in each document, so that one that the program still holds
  // from the document before means nothing here.
  const kFirst = Math.floor(Math.random() * 2 ** 40) * 1000;

  let revision = kFirst;
  let observer = null;

  function concernsForms(node) {
    return node.nodeType === Node.ELEMENT_NODE && (node.matches(kStructure) || node.querySelector(kStructure) !== null);
  }

  function changesStructure(record) {
    const inside = record.target.nodeType === Node.ELEMENT_NODE ? record.target : record.target.parentElement;
    if (inside !== null && inside.closest("select") !== null) return true;
    if (record.type === "attributes") return inside.matches(kStructure);
    return [...record.addedNodes, ...record.removedNodes].some(concernsForms);
  }

  function note(records) {
    if (records.some(changesStructure)) revision += 1;
  }

  function observe() {
    if (observer !== null) return;
    observer = new MutationObserver(note);
    observer.observe(document, {
      subtree: true,
      childList: true,
      characterData: true,
      attributes: true,
      attributeFilter: kAttributes,
    });
  }

  // --- Handles: numbers by which the program names nodes of this document ------------------------

  const nodes = new Map();
  const handles = new WeakMap();
  const optionLists = new WeakMap();

  function handleOf(node) {
    let handle = handles.get(node);
    if (handle === undefined) {
      handle = kFirst + nodes.size;
      nodes.set(handle, new WeakRef(node));
      handles.set(node, handle);
    }
    return handle;
  }

  function nodeOf(handle) {
    const node = nodes.get(Number(handle))?.deref();
    if (node === undefined) throw new Error("the element is gone");
    return node;
  }

  // --- Reads ------------------------------------------------------------------------------------

  function controlsOf(form) {
    const listed = Array.from(member(HTMLFormElement, "elements", form));
    return listed.filter((element) => element.matches("input,select,textarea,button"));
  }

  // The kinds of fields that hold a text. The program knows them by one name, whatever kind of text a
  // page's author expects in them.
  const kTextTypes = ["color", "date", "datetime-local", "email", "month", "number", "range", "search", "tel", "time",
    "url", "week"];

  function typeOf(element) {
    return kTextTypes.includes(element.type) ? "text" : element.type ?? "";
  }

  function elementFacts(element) {
    const isSelect = element instanceof HTMLSelectElement;
    const facts = [
      handleOf(element),
      element.name ?? "",
      typeOf(element),
      element.value ?? "",
      element.checked ? 1 : 0,
      element.getAttribute("src") ?? "",
    ];
    const options = isSelect ? Array.from(element.options) : [];
    if (isSelect) optionLists.set(element, options);
    facts.push(options.length);
    for (const option of options) facts.push(option.text, option.value, option.selected ? 1 : 0);
    return facts;
  }

  function listFacts(elements) {
    const facts = [elements.length];
    for (const element of elements) facts.push(...elementFacts(element));
    return facts;
  }

  function actionOf(form) {
    return typeof form.action === "string" ? form.getAttribute("action") ?? "" : "[object]";
  }

  function formFacts(form) {
    return [handleOf(form), actionOf(form), form.getAttribute("id") ?? ""];
  }

  function documentFacts() {
    const forms = Array.from(document.forms);
    const facts = [window.length, forms.length];
    for (const form of forms) facts.push(...formFacts(form));
    return facts;
  }

  const reads = {
    document: documentFacts,
    form: (handle) => listFacts(controlsOf(nodeOf(handle))),
    tag: (name) => listFacts(Array.from(document.getElementsByTagName(name))),
    // A frame of another origin refuses here, by the web's own rules.
    frame: (index) => {
      const child = window[Number(index)];
      if (child.document === null || child.velmoraAgent === undefined) throw new Error("the frame has no document");
      return [child.velmoraAgent.frameNumber];
    },
  };

  // --- Writes: what a user's own change does, and only if it changes something -------------------

  function announceChange(element, inputEvent) {
    element.dispatchEvent(inputEvent);
    element.dispatchEvent(new Event("change", { bubbles: true }));
  }

  const writes = {
    value: (handle, text) => {
      const element = nodeOf(handle);
      const before = element.value;
      if (before === text) return;
      // The setter of this world's prototype: a page's own setter on the element is not called, so
      // that a page which compares old and new value in its handler sees the change.
      element.value = text;
      if (element.value === before) return;
      announceChange(element, new InputEvent("input", { bubbles: true, composed: true, inputType: "insertText" }));
    },
    check: (handle) => {
      const element = nodeOf(handle);
      if (!element.checked) element.click();
    },
    select: (handle, index) => {
      const element = nodeOf(handle);
      const option = optionLists.get(element)?.[Number(index)];
      if (option === undefined || option.closest("select") !== element) throw new Error("the option is gone");
      if (option.selected) return;
      option.selected = true;
      announceChange(element, new Event("input", { bubbles: true, composed: true }));
    },
  };

  // --- Requests of the program ------------------------------------------------------------------

  function answer(message) {
    // A frame that was taken out of the page lives on for as long as something holds it.
    if (window.top === null) throw new Error("the frame is gone");
    const [operation, ...given] = unpack(message);
    observe();
    if (operation in reads) return pack(reads[operation](...given));
    if (operation in writes) {
      writes[operation](...given);
      return "";
    }
    throw new Error("no such operation: " + operation);
  }

  /** The program has what it wants of this event; watching every change would only cost the page time. */
  function rest() {
    observer?.disconnect();
    observer = null;
    revision += 1;
  }

  /** How often the structure has changed; called after the page's own reactions have run. */
  function currentRevision() {
    if (observer !== null) note(observer.takeRecords());
    return revision;
  }

  // --- Events for the program -------------------------------------------------------------------

  function frameOfTarget(name) {
    const target = name.toLowerCase();
    if (target === "" || target === "_self") return window;
    if (target === "_parent") return window.parent;
    if (target === "_top") return window.top;
    if (target === "_blank") return null;
    const find = (frame) => {
      try {
        if (frame.name === name) return frame;
      } catch {
        return null; // another origin keeps its name and its frames to itself
      }
      for (let i = 0; i < frame.length; ++i) {
        const found = find(frame[i]);
        if (found !== null) return found;
      }
      return null;
    };
    return find(window) ?? find(window.top);
  }

  /** The number of the frame that a target names; 0 for a new window or a frame that refuses. */
  function frameNumberOfTarget(name) {
    try {
      return frameOfTarget(name)?.velmoraAgent?.frameNumber ?? 0;
    } catch {
      return 0;
    }
  }

  /** The target's name as the page gives it; one of the reserved words counts as none. */
  function targetName(name) {
    return name.startsWith("_") ? "" : name;
  }

  function encodingOf(form) {
    for (const label of form.getAttribute("accept-charset")?.split(/[ \t\n\f\r,]+/) ?? []) {
      try {
        return new TextDecoder(label).encoding;
      } catch {
        // an unknown label: the next one counts
      }
    }
    return document.characterSet;
  }

  let encodeForm = null;

  /** The bytes that the default encoding makes of a form's entries; a file gives its name. */
  function formBody(form, formData) {
    encodeForm ??= parts.formbody(parts.convert);
    const texts = Array.from(formData, ([name, value]) => [name, typeof value === "string" ? value : value.name]);
    return encodeForm(texts, encodingOf(form));
  }

  /** Method, address and target of a form, with what the button that submits it changes of them. */
  function destinationOf(form, submitter) {
    const effective = (attribute, name) =>
      submitter?.hasAttribute("form" + attribute) ? submitter["form" + name] : member(HTMLFormElement, attribute, form);
    const target = submitter?.getAttribute("formtarget") ?? form.getAttribute("target") ??
      document.querySelector("base[target]")?.target ?? "";
    return { method: effective("method", "Method"), address: effective("action", "Action"), target };
  }

  let lastSubmit = null;

  window.addEventListener("submit", (event) => {
    lastSubmit = event;
    setTimeout(() => {
      if (lastSubmit === event) lastSubmit = null;
    });
  }, true);

  /** The button by which a form is submitted; null if a script gathers its entries. */
  function submitterOf(form) {
    if (lastSubmit === null || lastSubmit.target !== form) return null;
    // The engine gathers them once all listeners have run and none has stopped it; before that and
    // after that it is a page's script: `new FormData(form)` or `form.submit()`.
    const goesOut = lastSubmit.eventPhase === Event.NONE && !lastSubmit.defaultPrevented;
    return goesOut ? lastSubmit.submitter : null;
  }

  let lastFacts = { formData: null, packed: "" };

  function tellFormData(event) {
    const { method, address, target } = destinationOf(event.target, submitterOf(event.target));
    if (method === "dialog") return; // closes a dialog of the page, goes nowhere
    const body = method === "post" ? formBody(event.target, event.formData) : "";
    const facts = [address, method, targetName(target), frameNumberOfTarget(target), body];
    const packed = pack(facts);
    if (lastFacts.formData === event.formData && lastFacts.packed === packed) return;
    lastFacts = { formData: event.formData, packed };
    tell("formdata", facts);
  }

  // The page's own listeners may change the entries, and one may stop the event. So the entries are
  // told as they are at first, and again if they differ behind the listeners of any of these places:
  // the program takes the last.
  window.addEventListener("formdata", (event) => {
    tellFormData(event);
    for (const place of [event.target, document, window]) {
      place.removeEventListener("formdata", tellFormData); // to come behind those that were added since
      place.addEventListener("formdata", tellFormData);
    }
  }, true);

  window.addEventListener("click", (event) => {
    const link = event.composedPath()
      .find((node) => node instanceof HTMLAnchorElement || node instanceof HTMLAreaElement);
    if (link === undefined || !link.hasAttribute("href")) return;
    tell("link", [link.href, targetName(link.target), frameNumberOfTarget(link.target)]);
  }, true);

  parts.submissions({
    encodingOf,
    describe: (form, submitter, entries) => {
      const { method, address, target } = destinationOf(form, submitter);
      return [address, method, targetName(target), frameNumberOfTarget(target), formBody(form, entries)];
    },
    snapshot: (form) => [...formFacts(form), ...listFacts(controlsOf(form))],
    tell: (facts) => tell("submitted", facts),
  });

  const isTop = window.parent === window ? 1 : 0;

  // A page answers an event in promises, and a promise may lead to another: after a write this many
  // turns are left to them before the program hears what the write has changed.
  const kTurns = 8;

  /** Serves the program from inside the microtasks of the finished document's last event. */
  function serve(turnsLeft) {
    if (turnsLeft > 0) queueMicrotask(() => serve(turnsLeft - 1));
    else if (parts.serve()) queueMicrotask(() => serve(kTurns));
  }

  const settling = parts.settling(() => {
    tell("finished", [document.URL, isTop]);
    queueMicrotask(() => serve(0));
  });

  // The event after all listeners of "load" have run; it comes for a page from the history's store too,
  // which does not load again.
  window.addEventListener("pageshow", settling.loaded);
  window.addEventListener("hashchange", settling.moved);
  window.addEventListener("popstate", settling.moved);

  tell("begun", [isTop]);

  return {
    frameNumber,
    answer,
    currentRevision,
    rest,
    markup: () => document.documentElement?.innerHTML ?? "",
    click: (handle) => nodeOf(handle).click(),
    moved: settling.moved,
  };
});
