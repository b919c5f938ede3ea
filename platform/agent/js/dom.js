// The members of documents, forms and elements as the engine has them. In a page an element named
// "forms", "URL" or "getAttribute" hides the document's or the form's own member of that name, from
// the agent's script too; the prototypes of the agent's world cannot be hidden. The file is one
// function; given what is to hear of a fault in a listener, it gives the functions that go by the
// prototypes.
(function (tellFault) {
  "use strict";

  const getterOf = (type, name) => Object.getOwnPropertyDescriptor(type.prototype, name).get;
  const read = (type, name, object) => getterOf(type, name).call(object);

  const { getAttribute, hasAttribute, matches, closest, querySelector } = Element.prototype;
  const { addEventListener, removeEventListener, dispatchEvent } = EventTarget.prototype;
  const { getElementsByTagName, createElementNS } = Document.prototype;
  const { getRootNode, compareDocumentPosition } = Node.prototype;
  const shadowOf = getterOf(Element, "shadowRoot");
  const isConnected = getterOf(Node, "isConnected");
  const nodeType = getterOf(Node, "nodeType");
  const localName = getterOf(Element, "localName");
  const namespace = getterOf(Element, "namespaceURI");

  // What a page has moved here out of a frame has the prototypes of that frame: a node is told by its
  // kind, never by `instanceof`.
  const isElement = (node) => nodeType.call(node) === Node.ELEMENT_NODE;
  const isForm = (element) =>
    localName.call(element) === "form" && namespace.call(element) === "http://www.w3.org/1999/xhtml";

  // A page that opens its document anew (document.open) takes all listeners off it and its window. Those
  // of the agent come back with the new content; one that is there is not added twice.
  const kept = [];
  new MutationObserver(() => kept.forEach((given) => addEventListener.call(...given)))
    .observe(document, { childList: true });

  /** The listener, with a fault in it told: the engine tells nobody of one. */
  function guarded(listener) {
    return (event) => {
      try {
        listener(event);
      } catch (error) {
        tellFault(error);
      }
    };
  }

  /** A listener for the life of the window, called ahead of those of the page. */
  function keep(type, listener) {
    const given = [window, type, guarded(listener), true];
    kept.push(given);
    addEventListener.call(...given);
  }

  // Some events do not leave a shadow root: those are listened for inside each.
  const keptInside = [];
  const entered = new WeakSet();

  function keepInside(type, listener) {
    keep(type, listener);
    keptInside.push([type, guarded(listener), true]);
  }

  function enter(root) {
    if (root === document || entered.has(root)) return;
    entered.add(root);
    for (const given of keptInside) addEventListener.call(root, ...given);
  }

  function list(root, selector) {
    const type = { [Node.DOCUMENT_NODE]: Document, [Node.ELEMENT_NODE]: Element }[nodeType.call(root)];
    return (type ?? DocumentFragment).prototype.querySelectorAll.call(root, selector);
  }

  function addRoots(root, found) {
    found.push(root);
    const elements = list(root, "*");
    for (let i = 0, count = elements.length; i < count; i += 1) {
      const shadow = shadowOf.call(elements[i]);
      if (shadow !== null) addRoots(shadow, found);
    }
    return found;
  }

  // A long page is gone through once for all that is asked until other scripts can have run.
  let known = null;

  /** The document and the open shadow roots in it, in the order of their hosts. */
  function roots() {
    if (known === null) {
      known = addRoots(document, []);
      known.forEach(enter);
      queueMicrotask(() => {
        known = null;
      });
    }
    return known;
  }

  /** The elements that match, those in open shadow roots included, in the order of the page. */
  function select(selector, root = document) {
    const found = list(root, selector);
    if (roots().length === 1) return Array.from(found);
    const wanted = new Set(found);
    return Array.from(list(root, "*")).flatMap((element) => {
      const shadow = shadowOf.call(element);
      return [...(wanted.has(element) ? [element] : []), ...(shadow === null ? [] : select(selector, shadow))];
    });
  }

  return {
    keep,
    keepInside,
    enter,
    roots,
    select,
    read,
    forms: () => select("form").filter(isForm),
    scripts: () => read(Document, "scripts", document),
    address: () => read(Document, "URL", document),
    /** An action that is a script says nothing of where a form goes: the page sends the data itself. */
    isScript: (action) => action.startsWith("javascript:"),
    charset: () => read(Document, "characterSet", document),
    shadowOf: (element) => shadowOf.call(element),
    rootOf: (node) => getRootNode.call(node),
    isConnected: (node) => isConnected.call(node),
    first: (selector) => Document.prototype.querySelector.call(document, selector),
    newLink: (owner) => createElementNS.call(owner, "http://www.w3.org/1999/xhtml", "a"),
    isElement,
    isForm,
    isShadowRoot: (node) => node !== window && nodeType.call(node) === Node.DOCUMENT_FRAGMENT_NODE,
    nameOf: (element) => localName.call(element),
    parentOf: (node) => read(Node, "parentElement", node),
    attribute: (element, name) => getAttribute.call(element, name),
    has: (element, name) => hasAttribute.call(element, name),
    matches: (element, selector) => matches.call(element, selector),
    closest: (element, selector) => closest.call(element, selector),
    find: (element, selector) => querySelector.call(element, selector),
    findAll: (element, selector) => list(element, selector),
    precedes: (a, b) => (compareDocumentPosition.call(a, b) & Node.DOCUMENT_POSITION_FOLLOWING) !== 0,
    guarded,
    listen: (target, type, listener) => addEventListener.call(target, type, listener),
    unlisten: (target, type, listener) => removeEventListener.call(target, type, listener),
    /** False if the page has stopped what the event leads to. */
    dispatch: (element, event) => {
      const goesOn = dispatchEvent.call(element, event);
      known = null;
      return goesOn;
    },
    click: (element) => {
      element.click();
      known = null;
    },
    requestSubmit: (form) => HTMLFormElement.prototype.requestSubmit.call(form),
  };
})
