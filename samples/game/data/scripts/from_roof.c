// Spawn script: whoever is set here jumps down from a roof.
void main()
{
	void self = getlocalvar("self");
	changeentityproperty(self, "animation", "spawn");
	changeentityproperty(self, "a", 130);
	tossentity(self, 1, 0, 0);
}
