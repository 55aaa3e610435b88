// Where a sign-in flow has arrived: "form" when the identity provider asks for something, "done"
// when the browser is back on the airline's site outside its sign-in pages, else "waiting".
(function (identityHost, siteDomain) {
    const isIn = (parent) =>
        location.hostname === parent || location.hostname.endsWith("." + parent);
    const visible = (element) => Boolean(element && element.offsetParent);

    if (isIn(identityHost)) {
        const passwords = [...document.querySelectorAll("input[type=password]")];
        const user = document.getElementById("username");
        return passwords.some(visible) || (user && user.matches("input") && visible(user))
            ? "form"
            : "waiting";
    }
    return isIn(siteDomain) && !location.pathname.startsWith("/auth/")
        ? "done"
        : "waiting";
})
