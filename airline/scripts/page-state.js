// What a search page that has asked for no offers shows instead: "form" when it asks to sign in,
// else its title and headings, where a refusal says so.
(function () {
    const visible = (element) => Boolean(element.offsetParent);
    const passwords = [...document.querySelectorAll("input[type=password]")];
    if (passwords.some(visible)) {
        return "form";
    }
    const headings = [...document.querySelectorAll("h1, h2")].slice(0, 5);
    const texts = [document.title, ...headings.map((heading) => heading.textContent)];
    return "page " + texts.join(" · ").slice(0, 500);
})
