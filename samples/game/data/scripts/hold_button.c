// Spawn script of a crate or barrel: what it holds.
void main()
{
	setentityvar(getlocalvar("self"), "holds", "Button");
}
