// The Baron arrives from above; nobody may join while he is at it.
void main()
{
	void self = getlocalvar("self");
	setanimation(self, openborconstant("ANI_SPAWN"));
	setentityvar(self, "angry", 0);
	changeopenborvariant("nojoin", 1);
}
